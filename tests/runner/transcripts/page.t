The page: everything escaped, a grid with the reasons, pictures where they can be drawn.

  $ letters 'Flute &amp; &lt;Oboe&gt;=n.w' Horn=nnn >in.xml
  $ node=$(command -v node) || exit 80
  $ PATH=$(dirname "$(command -v sokrun)") sokrun fill in.xml --check -q --html page.html
  [3]
  $ grep -oE '<td class="[a-z]+" title="[^"]*"|No pictures of the music: [^.]*' page.html
  <td class="music" title="kept: layer 1 is shown and holds music"
  <td class="filled" title="filled: no layer holds music"
  <td class="rest" title="kept: layer 1 is shown and holds a whole-measure rest"
  <td class="music" title="kept: layer 1 is shown and holds music"
  <td class="music" title="kept: layer 1 is shown and holds music"
  <td class="music" title="kept: layer 1 is shown and holds music"
  No pictures of the music: Node could not be run
  $ grep -E '<Oboe>|https?:' page.html
  [1]

Notes that came or went are marked, and no others.

  $ mkdir -p node_modules/verovio && cat >node_modules/verovio/index.js <<'JS'
  > exports.module = {calledRun: true};
  > exports.toolkit = class {
  >   setOptions() {} select(range) { this.range = range; } redoLayout() {} getVersion() { return '9.9-x'; }
  >   loadData(text) { this.text = text; return true; }
  >   getPageCount() { return this.text.split('<measure').length - 1; }
  >   renderToSVG() {
  >     const note = n => `<g id="${(n.match(/id="(.*?)"/) || [, 'x'])[1]}" class="${/<rest/.test(n) ? 'mRest' : 'note'}"/>`;
  >     const measure = this.range ? this.range.measureRange.split('-')[0] - 1 : 0;
  >     return '<svg><g class="measure">' + this.text.split('<measure')[measure + 1].match(/<note.*?<\/note>/g)?.map(note) + '</g></svg>';
  >   }
  > };
  > JS
  $ export NODE_PATH=$PWD/node_modules; sokrun fill in.xml --check -q --html page.html
  [3]
  $ grep -oE '<h3>.*</h3>|<svg>.*</svg>|Engraved by.*[0-9]' page.html
  <h3>Measure 2</h3>
  <svg><g class="measure">undefined</g></svg>
  <svg><g class="measure"><g class="mRest came"/></g></svg>
  Engraved by Verovio 9.9

Of several scores, those without changes are a folded list, or left out.

  $ letters Flute=nn >same.xml
  $ sokrun fill in.xml same.xml nothing.xml --check -q --html page.html --pictures 0
  sokrun: nothing.xml: No such file or directory
  [1]
  $ grep -E '<article|<h2>|<summary>|<li><b>' page.html
  <article class="failed">
  <h2>nothing.xml</h2>
  <article>
  <h2>in.xml</h2>
  <li><span class="swatch filled"></span><b>1</b> filled: no layer holds music <details><summary>where</summary><div>Flute &amp; &lt;Oboe&gt;: measure 2</div></details></li>
  <details class="unchanged"><summary>1 score unchanged</summary>
  <li><b>same.xml</b><div>2 kept: layer 1 is shown and holds music</div></li>
  $ sokrun fill in.xml same.xml --check -q --html page.html --pictures 0 --only-changed
  [3]
  $ grep -cE 'same.xml|class="music"' page.html
  0
  [1]
