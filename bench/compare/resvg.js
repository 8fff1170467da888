// The counterpart of Subject.cpp for resvg, whose package is found by NODE_PATH:
//
//   node --expose-gc resvg.js check FILE...
//   node --expose-gc resvg.js times ROUNDS SECONDS SIDES FILE...
//   node --expose-gc resvg.js memory SIDE FILE...
//   node resvg.js whole IN OUT SIDE
//
// Its size is told to the constructor, which parses; render() makes the bitmap too.
'use strict';
const fs = require('fs');
const { Resvg } = require('@resvg/resvg-js');

const FEWEST_ROUNDS = 3;

// What is thrown away is nobody's time, and must not add up to nobody's memory: bitmaps are given back
// between two turns of the event loop only.
async function collect() {
  global.gc?.();
  await new Promise(setImmediate);
}

function now() {
  const used = process.cpuUsage();
  return (used.user + used.system) / 1e3;
}

// Fits into a square, as the others do. Fonts stay out: no drawing has text.
function optionsOf(text, side) {
  const font = { loadSystemFonts: false };
  const { width, height } = new Resvg(text, { font });
  return { font, fitTo: { mode: width >= height ? 'width' : 'height', value: side } };
}

function resident(name) {
  const status = fs.readFileSync('/proc/self/status', 'latin1');
  return Number(new RegExp(`${name}:\\s*(\\d+)`).exec(status)[1]);
}

async function times(rounds, seconds, sides, files) {
  for (const side of sides) {
    const options = files.map((text) => optionsOf(text, side));
    const all = {};
    const start = now();
    for (let round = 0; round <= rounds; ++round) {
      if (round > FEWEST_ROUNDS && (now() - start) * sides.length > seconds * 1e3) break;
      const sums = {};
      const timed = (phase, work) => {
        const from = now();
        const result = work();
        sums[phase] = (sums[phase] ?? 0) + now() - from;
        return result;
      };
      for (const [index, text] of files.entries()) {
        const make = () => new Resvg(text, options[index]);
        const drawing = side === sides[0] ? timed('load', make) : make();
        timed(`first ${side}`, () => drawing.render());
        drawing.render();
        timed(`redraw ${side}`, () => drawing.render());
        await collect();
      }
      if (round > 0) for (const phase in sums) (all[phase] ??= []).push(sums[phase]);
    }
    for (const phase in all) console.log(`${phase}: ${all[phase].join(' ')}`);
  }
}

async function memory(side, files) {
  const options = files.map((text) => optionsOf(text, side));
  await collect();
  // Forgets the peak of the start.
  fs.writeFileSync('/proc/self/clear_refs', '5');
  const idle = resident('VmRSS');
  for (const [index, text] of files.entries()) {
    new Resvg(text, options[index]).render();
    await collect();
  }
  console.log(`idle: ${idle}\npeak: ${resident('VmHWM')}`);
}

const [mode, ...rest] = process.argv.slice(2);
const read = (names) => names.map((name) => fs.readFileSync(name));
if (mode === 'check') {
  for (const text of read(rest)) new Resvg(text, optionsOf(text, 64)).render();
} else if (mode === 'times') {
  times(Number(rest[0]), Number(rest[1]), rest[2].split(',').map(Number), read(rest.slice(3)));
} else if (mode === 'memory') {
  memory(Number(rest[0]), read(rest.slice(1)));
} else if (mode === 'whole') {
  const text = fs.readFileSync(rest[0]);
  const font = { loadSystemFonts: false };
  const fit = (mode) => new Resvg(text, { font, fitTo: { mode, value: Number(rest[2]) } });
  let drawing = fit('width');
  if (drawing.height > drawing.width) drawing = fit('height');
  fs.writeFileSync(rest[1], drawing.render().asPng());
}
