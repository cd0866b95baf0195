#include "host/runner/validate/validate_score.h"

namespace sok {

const char* const kValidationScore = R"(<?xml version="1.0" encoding="UTF-8"?>
<score-partwise version="4.0">
 <part-list>
  <score-part id="P1"><part-name>Flute</part-name><part-abbreviation>Fl.</part-abbreviation></score-part>
  <score-part id="P2"><part-name>Piano</part-name><part-abbreviation>Pno.</part-abbreviation></score-part>
 </part-list>
 <part id="P1">
  <measure number="1"><attributes><divisions>2</divisions>
     <time><beats>4</beats><beat-type>4</beat-type></time></attributes>
   <direction><direction-type><words>Andante</words></direction-type></direction>
   <direction><direction-type><wedge type="crescendo"/></direction-type></direction>
   <note><pitch><step>A</step><octave>4</octave></pitch><duration>2</duration><voice>1</voice><type>quarter</type>
     <notations><slur type="start" number="1"/></notations>
     <lyric><syllabic>single</syllabic><text>Ah</text></lyric></note>
   <note><pitch><step>B</step><octave>4</octave></pitch>
     <duration>3</duration><voice>1</voice><type>quarter</type><dot/></note>
   <note><pitch><step>C</step><octave>5</octave></pitch><duration>1</duration><voice>1</voice><type>eighth</type>
     <notations><slur type="stop" number="1"/><articulations><staccato/></articulations></notations></note>
   <note><rest/><duration>2</duration><voice>1</voice><type>quarter</type></note>
   <direction><direction-type><wedge type="stop"/></direction-type></direction>
  </measure>
  <measure number="2"><note><pitch><step>G</step><octave>4</octave></pitch>
     <duration>8</duration><voice>1</voice><type>whole</type></note></measure>
  <measure number="3"><note><rest measure="yes"/><duration>8</duration><voice>1</voice></note></measure>
  <measure number="4"><note><pitch><step>D</step><octave>5</octave></pitch>
     <duration>4</duration><voice>1</voice><type>half</type></note>
   <note><rest/><duration>4</duration><voice>1</voice><type>half</type></note></measure>
  <measure number="5"/>
 </part>
 <part id="P2">
  <measure number="1"><attributes><divisions>2</divisions>
     <time><beats>4</beats><beat-type>4</beat-type></time><staves>2</staves></attributes>
   <note><pitch><step>E</step><octave>5</octave></pitch>
     <duration>8</duration><voice>1</voice><type>whole</type><staff>1</staff></note>
   <backup><duration>8</duration></backup>
   <note><pitch><step>C</step><octave>4</octave></pitch>
     <duration>8</duration><voice>2</voice><type>whole</type><staff>1</staff></note>
   <backup><duration>8</duration></backup>
   <note><rest measure="yes"/><duration>8</duration><voice>5</voice><staff>2</staff></note>
  </measure>
  <measure number="2"><note><rest measure="yes"/><duration>8</duration><voice>1</voice><staff>1</staff></note>
   <backup><duration>8</duration></backup>
   <note><pitch><step>F</step><octave>4</octave></pitch>
     <duration>8</duration><voice>2</voice><type>whole</type><staff>1</staff></note>
   <backup><duration>8</duration></backup>
   <note><pitch><step>G</step><octave>2</octave></pitch>
     <duration>8</duration><voice>5</voice><type>whole</type><staff>2</staff></note></measure>
  <measure number="3"><forward><duration>8</duration><voice>1</voice><staff>1</staff></forward></measure>
  <measure number="4"><note><pitch><step>E</step><octave>5</octave></pitch>
     <duration>8</duration><voice>1</voice><type>whole</type><staff>1</staff></note>
   <backup><duration>8</duration></backup>
   <note><pitch><step>A</step><octave>3</octave></pitch>
     <duration>8</duration><voice>2</voice><type>whole</type><staff>1</staff></note></measure>
  <measure number="5"><note><rest measure="yes"/><duration>8</duration><voice>1</voice><staff>1</staff></note></measure>
 </part>
</score-partwise>
)";

}  // namespace sok
