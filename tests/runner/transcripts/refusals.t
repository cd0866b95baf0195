What makes no sense or cannot be done is said in a line. Exit code 2: the command line; 1: a score, a bundle, an output.

  $ letters Flute=n. Oboe=nn >in.xml; head -c 60 in.xml >bad.xml; mkdir folder; touch folder/note.xml
  $ try() { sokrun "$@" </dev/null 2>&1 | sed '/^Try /d'; echo "${PIPESTATUS[0]}"; }

  $ try
  sokrun: say which command
  2
  $ try fil in.xml
  sokrun: there is no command fil; did you mean fill?
  2
  $ try flubber
  sokrun: there is no command flubber
  2
  $ try --nonsense
  sokrun: there is no option --nonsense
  2
  $ try fill
  sokrun: IN is required
  2
  $ try fill in.xml
  sokrun: say where the result goes: -o, --in-place or --output-dir; or look first with --dry-run or --check
  2
  $ try fill in.xml -o out.xml --in-place
  sokrun: --output excludes --in-place
  2
  $ try fill in.xml -o out.xml --dry-run
  sokrun: --output excludes --dry-run
  2
  $ try fill in.xml -o out.xml --backup
  sokrun: --backup requires --in-place
  2
  $ try fill - --in-place
  sokrun: --in-place: stdin is no file
  2
  $ try fill in.xml --output-dir .
  sokrun: --output-dir: in.xml would be written over itself; --in-place does that
  2
  $ try fill in.xml - --check
  sokrun: stdin cannot be one of several inputs
  2
  $ try fill in.xml in.xml -o out.xml
  sokrun: -o is for one score; use --output-dir or --in-place for several
  2
  $ try fill in.xml in.xml --output-dir out
  sokrun: in.xml and in.xml would both be written to out/in.xml
  2
  $ try fill in.xml --check --verbose --quiet
  sokrun: --quiet excludes --verbose
  2
  $ try run 2 in.xml --check | grep -o 'has no command.*'
  has no command 2; it has 2 commands, from 0
  $ try validate --check nosuch bundle | grep -o 'nosuch not in\|^2$'
  nosuch not in
  2
  $ try scan --check nosuch in.xml
  sokrun: --check: nosuch not in {empty,bar-rest,look-alike,hidden-rest,surplus-voices}
  2

The page goes over no score and no result, however its path is spelled.

  $ try fill in.xml --check --html ./in.xml
  sokrun: --html: ./in.xml is one of the scores
  2
  $ try fill in.xml -o out.xml --html folder/../out.xml
  sokrun: --html: folder/../out.xml is one of the scores
  2
  $ try fill in.xml -i --backup --html in.xml.bak
  sokrun: --html: in.xml.bak is one of the scores
  2
  $ try scan in.xml --html folder/../in.xml
  sokrun: --html: folder/../in.xml is one of the scores
  2

Selections.

  $ try fill in.xml --check --measures ""
  sokrun: --measures: an empty value
  2
  $ try fill in.xml --check --staves ""
  sokrun: --staves: an empty value
  2
  $ try fill in.xml --check --parts ""
  sokrun: --parts: an empty value
  2
  $ try fill in.xml --check --measures 0
  sokrun: --measures: "0" is no number from 1 to 32767 and no range such as 3-8
  2
  $ try fill in.xml --check --staves 3-1
  sokrun: --staves: "3-1" is no number from 1 to 32767 and no range such as 3-8
  2
  $ try fill in.xml --check --hide-layer 5
  sokrun: --hide-layer: "5" is no layer; layers are 1 to 4
  2
  $ try fill in.xml --check --hide-layer 2:3-
  sokrun: in.xml: --hide-layer 2: the score has 2 staves, and none of those that are named
  2
  $ try fill in.xml --check --hidden-rests maybe | grep -o hidden-rests
  hidden-rests
  $ try fill in.xml --check --without SX_Nothing
  sokrun: --without: the host interface has no function SX_Nothing
  2
  $ try fill in.xml --check --measures 5-9 --hide-layer 2
  sokrun: in.xml: nothing is selected: the score has 2 measures: measure 5-9 left out
  1
  $ try fill in.xml --check --numbers X
  sokrun: in.xml: nothing is selected: no measure is numbered X
  1
  $ try fill in.xml --check --parts Tuba
  sokrun: in.xml: no part is called "Tuba"; the score has Flute, Oboe
  1

Files.

  $ try fill bad.xml -o out.xml
  sokrun: bad.xml:2: not well-formed XML: Error parsing element attribute
  1
  $ try fill nothing.xml --check
  sokrun: nothing.xml: No such file or directory
  1
  $ try fill folder --check
  folder: passed over 1 file without a MusicXML score
  sokrun: folder: no scores (.musicxml, .xml, .mxl) in this folder
  1
  $ try fill in.xml --check --plugin nothing
  sokrun: nothing: no such bundle
  1
  $ try fill in.xml --check --plugin /
  sokrun: /: has no executable; looked for Contents/MacOS/, since its Info.plist is missing, broken or has no CFBundleExecutable
  1
  $ try fill in.xml -o no/folder/out.xml
  sokrun: no/folder/out.xml: cannot be written: No such file or directory
  1
  $ try fill in.xml -o /dev/full
  sokrun: /dev/full: cannot be written: No space left on device
  1
  $ printf MThd >song.mid; try scan song.mid
  sokrun: song.mid: this is a MIDI file; export the score as MusicXML (.musicxml or .mxl) and take that
  1
  $ echo '<mei/>' >song.xml; try fill song.xml --check
  sokrun: song.xml: this is an MEI file; export the score as MusicXML (.musicxml or .mxl) and take that
  1
  $ ls
  bad.xml
  folder
  in.xml
  song.mid
  song.xml

What a score may hold has bounds; a name forges no line, and a bundle's lists are read from files alone.

  $ letters Flute=n | sed 's|<divisions>|<staves>64</staves>&|' >wide.xml
  $ python3 -c "print(open('wide.xml').read().replace('</measure>', '</measure>' + '<measure/>' * 9000))" >huge.xml
  $ try fill huge.xml --check 2>&1 | grep -o 'the score has.*'
  the score has 64 staves of 9001 measures; the two numbers' product may be 500000
  $ python3 -c "
  > note = '<note><rest/><duration>1</duration><voice>v%d</voice></note>'
  > print(open('in.xml').read().replace('</measure>', ''.join(note % i for i in range(70000)) + '</measure>', 1))" >voices.xml
  $ try fill voices.xml --check 2>&1 | grep -o 'the part has.*'
  the part has more than 65535 voices
  $ try fill $'no\e[2J\nsuch' --check
  sokrun: no\x1b[2J\nsuch: No such file or directory
  1
  $ cp -rL "$TEST_EXTENSION" pipe.bundle; rm pipe.bundle/Contents/Info.plist; mkfifo pipe.bundle/Contents/Info.plist
  $ try list pipe.bundle
  sokrun: pipe.bundle/Contents/Info.plist: cannot be read
  1
  $ rm pipe.bundle/Contents/Info.plist; printf '{\na = b;\nc = ;\n}' >pipe.bundle/Contents/Info.plist
  $ try list pipe.bundle
  sokrun: pipe.bundle/Contents/Info.plist:3: not a property list
  1
  $ echo '{ "30000" = { a = b; }; "30003" = (c, d); }' | tee pipe.bundle/Contents/Resources/*.lproj/*.strings >/dev/null
  $ cp "$TEST_EXTENSION/Contents/Info.plist" pipe.bundle/Contents; sokrun list pipe.bundle | head -2
    0  
       30002
