list and info: what a bundle offers.

  $ sokrun list
    0  Clear Whole-Measure Rests
       Empties every layer of the selected measures that holds nothing but a whole-measure rest.
    1  Fill Empty Measures with Rests
       Puts a whole-measure rest into every selected measure of a staff that holds no music in any layer.
  $ sokrun list "$TEST_EXTENSION" --json
  [
    {
      "number": 0,
      "texts": [
        "Crash",
        "Crash",
        "Ends the process where there is a second measure."
      ]
    },
    {
      "number": 1,
      "texts": [
        "Leak and Talk",
        "Leak and Talk",
        "30005"
      ]
    },
    {
      "number": 2,
      "texts": [
        "Add Rests",
        "Add Rests",
        "Puts two quarter rests in front."
      ]
    },
    {
      "number": 3,
      "texts": [
        "Change Records",
        "Change Records",
        "Changes what a score file does not carry."
      ]
    }
  ]
  $ sokrun list none.bundle
  sokrun: none.bundle: no such bundle
  [1]
  $ sokrun info | tail -n +2
  identifier         com.sonkel.extension.MeasureRests
  interface version  0x19300000
  languages          de, en
  command 0          Clear Whole-Measure Rests
                     Clear Whole-Measure Rests
                     Empties every layer of the selected measures that holds nothing but a whole-measure rest.
  command 1          Fill Empty Measures with Rests
                     Fill Empty Measures with Rests
                     Puts a whole-measure rest into every selected measure of a staff that holds no music in any layer.
  missing texts      none
  exports            SonkelExtensionVersion, SonkelExtensionInit, SonkelExtensionEnumerate_UTF16, SonkelExtensionInvoke, SonkelExtensionTerminate, SonkelExtensionGetMenuStatus, Ext_getversion, Ext_init, Ext_enumerate_UTF16, Ext_invoke, Ext_terminate, Ext_getmenustatus, main, SonkelVersion, SokVersion
  missing exports    none
  other exports      none
  $ sokrun info "$TEST_EXTENSION" --json | tail -n +3
    "identifier": "com.sonkel.extension.TestExtension",
    "interface_version": "0x19300000",
    "languages": [
      "en"
    ],
    "commands": [
      {
        "number": 0,
        "texts": [
          "Crash",
          "Crash",
          "Ends the process where there is a second measure."
        ]
      },
      {
        "number": 1,
        "texts": [
          "Leak and Talk",
          "Leak and Talk",
          "30005"
        ]
      },
      {
        "number": 2,
        "texts": [
          "Add Rests",
          "Add Rests",
          "Puts two quarter rests in front."
        ]
      },
      {
        "number": 3,
        "texts": [
          "Change Records",
          "Change Records",
          "Changes what a score file does not carry."
        ]
      }
    ],
    "missing_texts": [
      "30005"
    ],
    "interface": [
      "SonkelExtensionVersion",
      "SonkelExtensionInit",
      "SonkelExtensionEnumerate_UTF16",
      "SonkelExtensionInvoke",
      "SonkelExtensionTerminate",
      "SonkelExtensionGetMenuStatus",
      "Ext_getversion",
      "Ext_init",
      "Ext_enumerate_UTF16",
      "Ext_invoke",
      "Ext_terminate",
      "Ext_getmenustatus",
      "main",
      "SonkelVersion",
      "SokVersion"
    ],
    "missing_exports": [],
    "other_exports": [],
    "alerts": []
  }
