// Draws the systems of a score that a run changed, before and after, with Verovio. Reads a JSON object from stdin:
//   modules   folders that may hold the package verovio
//   before, after   the score's text; notes to be marked have the ids sok-went-N and sok-came-N
//   measures   those that changed, positions from 1
//   limit   the most systems to draw
// Prints {version, systems: [{first, last, before, after}], left: systems not drawn}, or {error}.
'use strict';
const fs = require('fs');
const path = require('path');

function answer(value) {
  fs.writeSync(1, '');  // fails early when nobody listens
  process.stdout.write(JSON.stringify(value), () => process.exit(0));
}

function loadVerovio(modules) {
  for (const folder of modules) {
    try {
      return require(path.resolve(folder, 'verovio'));
    } catch (error) {
      if (error.code !== 'MODULE_NOT_FOUND') throw error;
    }
  }
  return null;
}

// Every page is as low as its one system: that is how the systems of a layout are told.
const kSystems = {breaks: 'auto', pageWidth: 2700, pageHeight: 100};
const kOneLine = {breaks: 'none', pageWidth: 2700, pageHeight: 60000};
const kCommon = {
  inputFrom: 'musicxml', adjustPageHeight: true, adjustPageWidth: true, scale: 40, header: 'none', footer: 'none',
  svgViewBox: false, svgRemoveXlink: true, svgAdditionalAttribute: ['staff@n', 'layer@n'], mnumInterval: 1,
  pageMarginLeft: 20, pageMarginRight: 20, pageMarginTop: 40, pageMarginBottom: 40,
};

const countOf = (svg, name) => svg.split(`class="${name}"`).length - 1;

function systems(toolkit) {
  const ranges = [];
  let first = 1;
  for (let page = 1; page <= toolkit.getPageCount(); ++page) {
    const measures = countOf(toolkit.renderToSVG(page), 'measure');
    if (measures > 0) ranges.push({first, last: first + measures - 1});
    first += measures;
  }
  return ranges;
}

// Named notes get a class, and all ids go: several pictures share a page.
const marked = svg => svg.replace(/ id="sok-(came|went)-\d+" class="([^"]*)"/g, ' class="$2 $1"')
    .replace(/<g id="[^"]*" class/g, '<g class').replace(/\n\s*/g, '\n').replace(/<desc>[^<]*<\/desc>\n/, '');

function draw(toolkit, ranges) {
  toolkit.setOptions(kOneLine);
  return ranges.map(({first, last}) => {
    toolkit.select({measureRange: `${first}-${last}`});
    toolkit.redoLayout();
    return marked(toolkit.renderToSVG(1));
  });
}

function main() {
  const {modules, before, after, measures, limit} = JSON.parse(fs.readFileSync(0, 'utf8'));
  const verovio = loadVerovio(modules);
  if (verovio === null) return answer({error: 'the npm package verovio is not installed'});
  const start = () => {
    const toolkit = new verovio.toolkit();
    toolkit.setOptions(kCommon);
    toolkit.setOptions(kSystems);
    if (!toolkit.loadData(before)) return answer({error: 'Verovio cannot read the score'});
    const changed = systems(toolkit).filter(
        ({first, last}) => measures.some(measure => measure >= first && measure <= last));
    const drawn = changed.slice(0, limit);
    const old = draw(toolkit, drawn);
    toolkit.select({});
    if (!toolkit.loadData(after)) return answer({error: 'Verovio cannot read the changed score'});
    const fresh = draw(toolkit, drawn);
    answer({
      version: toolkit.getVersion().replace(/-.*/, ''), left: changed.length - drawn.length,
      systems: drawn.map((range, i) => ({...range, before: old[i], after: fresh[i]})),
    });
  };
  if (verovio.module.calledRun) start();
  else verovio.module.onRuntimeInitialized = start;
}

process.on('uncaughtException', error => answer({error: String(error.message || error)}));
main();
