/// @file
/// Edits that end themselves: what changes while one is open is one step in the undo menu.
#pragma once

#include "SokExtShared/SokEDK/Source/edk/texts.h"
#include "SokExtShared/SokEDK/Source/sonkelpdk/edit_nesting.h"

namespace edk {

/// An edit from its construction to Finish(), at the latest to its end, where it is cancelled: a command that leaves
/// early leaves the score as it was. Not copied, not moved.
class Edit {
 public:
  /// Opens the edit under a name for the undo menu: a text of the bundle by its number, or one of your own
  /// (SX_StartSonkelEdit_UTF16). A host that refuses it is not noticed: its changes are then no step of their own.
  ///@{
  explicit Edit(int text) : Edit(Text(text)) {}
  explicit Edit(const eu16string& name) { SX_StartSonkelEdit_UTF16(name.c_str(), kInterfaceVersion); }
  Edit(const Edit&) = delete;
  Edit& operator=(const Edit&) = delete;
  ~Edit() {
    if (open_) SX_CancelSonkelEdit(kInterfaceVersion);
  }
  ///@}

  /// Ends the edit and keeps its changes (SX_EndSonkelEdit), or cancels it when there are none: a step that does
  /// nothing is no step. Returns what the command answers: 1 with changes, else 0. The second call does nothing.
  short Finish(bool changed) {
    if (open_ && changed) {
      SX_EndSonkelEdit(kInterfaceVersion);
    } else if (open_) {
      SX_CancelSonkelEdit(kInterfaceVersion);
    }
    open_ = false;
    return changed ? 1 : 0;
  }

 private:
  bool open_ = true;
};

}  // namespace edk
