// The host entry points of the engine: those that make sense without a screen.
//
// Each checks what the extension hands over and leaves the work to the document or the engine. The rows of the shared
// header make sure that the signatures are the interface's.
#include <algorithm>
#include <span>

#include "SokExtShared/SokEDK/Source/sonkelpdk/host_entry_points.h"
#include "host/engine/document_records.h"
#include "host/engine/host_call.h"

using namespace sok;

namespace {

constexpr short kOnlyDocument = 1;

Session& TheSession() { return *gEngine.session(); }
Document& TheDocument() { return *gEngine.session()->document; }

// Copies a text into a buffer of `capacity` units, cut to fit and always terminated.
template <typename Unit, typename Text>
short CopyText(const Text& text, Unit* buffer, short capacity) {
  if (buffer == nullptr || capacity <= 0) return 0;
  const std::size_t length = std::min(text.size(), static_cast<std::size_t>(capacity) - 1);
  std::transform(text.begin(), text.begin() + static_cast<std::ptrdiff_t>(length), buffer,
                 [](auto unit) { return static_cast<Unit>(unit); });
  buffer[length] = 0;
  return 1;
}

short ShowAlert(std::string message) {
  TheSession().alerts.push_back(std::move(message));
  return 1;  // the default button
}

int OpenEdit(std::string text) {
  gEngine.OpenEdit(std::move(text));
  return 1;
}

}  // namespace

extern "C" {

void SonkelEngineAttach(Session* session) { gEngine.Attach(session); }

// ---- Documents ----

short SX_GetCurrentOrvelDocument(short* document, unsigned int version) {
  return Serve<short>(__func__, version)([&] {
    if (document != nullptr) *document = kOnlyDocument;
    return kOnlyDocument;
  });
}

short SX_SetCurrentOrvelDocument(short document, unsigned int version) {
  return Serve<short>(__func__, version, document)([&] { return document == kOnlyDocument; });
}

short SX_GetNextOrvelDocument(short* document, unsigned int version) {
  return Serve<short>(__func__, version)([&] {
    if (document == nullptr || *document >= kOnlyDocument) return 0;
    *document = kOnlyDocument;
    return 1;
  });
}

short SX_IsOrvelDocumentDirty(short document, unsigned int version) {
  return Serve<short>(__func__, version, document)([&] { return document == kOnlyDocument && TheDocument().dirty; });
}

void SX_SetOrvelDocumentDirty(short document, short dirty, unsigned int version) {
  Serve<void>(__func__, version, document, dirty)([&] {
    if (document == kOnlyDocument) TheDocument().dirty = dirty != 0;
  });
}

// ---- Edits ----

int SX_StartSonkelEdit(const char* text, unsigned int version) {
  return Serve<int>(__func__, version, text)([&] { return OpenEdit(Utf8FromMacRoman(text)); });
}

int SX_StartSonkelEdit_UTF16(const unsigned short* text, unsigned int version) {
  return Serve<int>(__func__, version, text)([&] { return OpenEdit(Utf8FromUtf16(text)); });
}

short SX_EndSonkelEdit(unsigned int version) {
  return Serve<short>(__func__, version)([] { return gEngine.CloseEdit(true); });
}

void SX_CancelSonkelEdit(unsigned int version) {
  Serve<void>(__func__, version)([] { gEngine.CloseEdit(false); });
}

int SX_StartMassEdit(void* edit, int steps, unsigned int version) {
  return Serve<int>(__func__, version, edit, steps)([] { return ++TheSession().mass_edits_open, 1; });
}

void SX_EndMassEdit(void* edit, short keep, unsigned int version) {
  Serve<void>(__func__, version, edit, keep)([] { --TheSession().mass_edits_open; });
}

short SX_MassEditProgress(void* edit, short slot, short measure, short done, short all, unsigned int version) {
  return Serve<short>(__func__, version, edit, slot, measure, done, all)([] { return 1; });
}

// ---- Frames ----

EXTGF2005a* SX_LoadTGF(unsigned short stafflist, short slot, short measure, short layer, short option,
                       unsigned int version) {
  EXTGF2005a* loaded = nullptr;
  EXTGF2005a* const answer = Serve<EXTGF2005a*>(__func__, version, stafflist, slot, measure, layer, option)(
      [&] { return loaded = gEngine.LoadFrame(stafflist, slot, measure, layer, option); });
  if (answer == nullptr && loaded != nullptr) gEngine.FreeFrame(loaded);  // the observer took it back
  return answer;
}

int SX_FreeTGF(EXTGF2005a* frame, unsigned int version) {
  return Serve<int>(__func__, version, FrameArgument{frame})([&] { return gEngine.FreeFrame(frame); });
}

short SX_SaveTGF(EXTGF2005a* frame, unsigned int version) {
  return Serve<short>(__func__, version, FrameArgument{frame, true})([&] { return gEngine.SaveFrame(frame); });
}

short SX_InsertEXENTRY(EXTGF2005a* frame, short index, short count, unsigned int version) {
  return Serve<short>(__func__, version, FrameArgument{frame}, index,
                      count)([&] { return gEngine.InsertEntries(frame, index, count); });
}

short SX_DeleteEXENTRY(EXTGF2005a* frame, short index, short count, unsigned int version) {
  return Serve<short>(__func__, version, FrameArgument{frame}, index,
                      count)([&] { return gEngine.DeleteEntries(frame, index, count); });
}

void SX_ReduceEntries(EXTGF2005a* frame, unsigned int version) {
  Serve<void>(__func__, version, FrameArgument{frame})([&] { gEngine.ReduceEntries(frame); });
}

int SX_GetTGFDuration(EXTGF2005a* frame, unsigned int version) {
  return Serve<int>(__func__, version, FrameArgument{frame, true})([&] { return gEngine.FrameDuration(frame); });
}

int SX_GetMeasureDuration(short inst, short measure, unsigned int version) {
  return Serve<int>(__func__, version, inst, measure)([&] {
    // Every staff has the measures of the score, which is instrument 0.
    const bool known = inst >= 0 && inst <= TheDocument().StaffCount();
    return known ? TheDocument().MeasureDuration(measure) : 0;
  });
}

// ---- Data records ----

short SX_LoadEData(unsigned int tag, const EDataID* id, void* buffer, int* size, unsigned int version) {
  return Serve<short>(__func__, version, RecordArgument{tag, id, buffer, size})(
      [&] { return id != nullptr && LoadRecord(TheDocument(), tag, *id, buffer, size); });
}

short SX_SaveEData(unsigned int tag, const EDataID* id, const void* buffer, int size, unsigned int version) {
  return Serve<short>(__func__, version, RecordArgument{tag, id, const_cast<void*>(buffer)},
                      size)([&] { return id != nullptr && SaveRecord(TheDocument(), tag, *id, buffer, size); });
}

short SX_CreateEData(unsigned int tag, EDataID* id, const void* buffer, int size, unsigned int version) {
  return Serve<short>(__func__, version, RecordArgument{tag, id, const_cast<void*>(buffer)},
                      size)([&] { return id != nullptr && CreateRecord(TheDocument(), tag, *id, buffer, size); });
}

short SX_DeleteEData(unsigned int tag, const EDataID* id, unsigned int version) {
  return Serve<short>(__func__, version,
                      RecordArgument{tag, id})([&] { return id != nullptr && DeleteRecord(TheDocument(), tag, *id); });
}

short SX_PreviousEData(unsigned int tag, EDataID* id, void* buffer, int size, unsigned int version) {
  return Serve<short>(__func__, version, RecordArgument{tag, id, buffer},
                      size)([&] { return id != nullptr && PreviousRecord(TheDocument(), tag, *id, buffer, size); });
}

short SX_NextEData(unsigned int tag, EDataID* id, void* buffer, int size, unsigned int version) {
  return Serve<short>(__func__, version, RecordArgument{tag, id, buffer},
                      size)([&] { return id != nullptr && NextRecord(TheDocument(), tag, *id, buffer, size); });
}

// ---- Alerts ----

short SX_AlertMessage(void* parent, unsigned short icon, int buttons, const char* message, unsigned int version) {
  return Serve<short>(__func__, version, parent, icon, buttons,
                      message)([&] { return ShowAlert(Utf8FromMacRoman(message)); });
}

short SX_AlertMessage_UTF16(void* parent, unsigned short icon, int buttons, const unsigned short* message,
                            unsigned int version) {
  return Serve<short>(__func__, version, parent, icon, buttons,
                      message)([&] { return ShowAlert(Utf8FromUtf16(message)); });
}

// ---- Fonts and text ----

short SX_FontNameToNum(const char* name, unsigned int version) {
  return Serve<short>(__func__, version, name)([&] { return TheDocument().FontNumber(Utf8FromMacRoman(name)); });
}

short SX_FontNameToNum_UTF16(const unsigned short* name, unsigned int version) {
  return Serve<short>(__func__, version, name)([&] { return TheDocument().FontNumber(Utf8FromUtf16(name)); });
}

short SX_FontNumToName(short font, char* name, short capacity, unsigned int version) {
  return Serve<short>(__func__, version, font, capacity)([&] {
    const std::string* const found = TheDocument().FontName(font);
    return found != nullptr ? CopyText(MacRomanFromUtf8(*found), name, capacity) : short{0};
  });
}

short SX_FontNumToName_UTF16(short font, unsigned short* name, short capacity, unsigned int version) {
  return Serve<short>(__func__, version, font, capacity)([&] {
    const std::string* const found = TheDocument().FontName(font);
    return found != nullptr ? CopyText(Utf16FromUtf8(*found), name, capacity) : short{0};
  });
}

int SX_GetTextEncoding(unsigned int version) {
  return Serve<int>(__func__, version)([] { return 0; });  // Mac Roman
}

// ---- Instruments, layers and parts ----

short SX_SlotToInst(short slot, unsigned short stafflist, unsigned int version) {
  return Serve<short>(__func__, version, slot, stafflist)([&] { return TheDocument().SlotToInst(slot, stafflist); });
}

short SX_InstToSlot(short inst, unsigned short stafflist, unsigned int version) {
  return Serve<short>(__func__, version, inst, stafflist)([&] { return TheDocument().InstToSlot(inst, stafflist); });
}

short SX_GetMaxLayers(unsigned int version) {
  return Serve<short>(__func__, version)([] { return kLayers; });
}

short SX_GetShowLayer(short layer, unsigned int version) {
  return Serve<short>(__func__, version, layer)([&] { return TheDocument().LayerShown(layer); });
}

short SX_GetCurrentPartID(unsigned int version) {
  return Serve<short>(__func__, version)([] { return TheDocument().current_part; });
}

void SX_SetCurrentPartID(short part, unsigned int version) {
  Serve<void>(__func__, version, part)([&] {
    if (TheDocument().PartName(part) != nullptr) TheDocument().current_part = part;
  });
}

short SX_GetNextPartID(short part, unsigned int version) {
  return Serve<short>(__func__, version, part)([&] {
    const int next = std::max<int>(part, -1) + 1;
    return static_cast<short>(next <= TheDocument().PartCount() ? next : -1);
  });
}

int SX_CountParts(unsigned int version) {
  return Serve<int>(__func__, version)([] { return TheDocument().PartCount(); });
}

const char* SX_GetPartName(short part, unsigned int version) {
  static std::string text;  // until the next call
  return Serve<const char*>(__func__, version, part)([&]() -> const char* {
    const std::string* const name = TheDocument().PartName(part);
    return name != nullptr ? (text = MacRomanFromUtf8(*name)).c_str() : nullptr;
  });
}

const unsigned short* SX_GetPartName_UTF16(short part, unsigned int version) {
  static std::u16string text;  // until the next call
  return Serve<const unsigned short*>(__func__, version, part)([&]() -> const unsigned short* {
    const std::string* const name = TheDocument().PartName(part);
    return name != nullptr ? reinterpret_cast<const unsigned short*>((text = Utf16FromUtf8(*name)).c_str()) : nullptr;
  });
}

// ---- The host itself ----

short SX_IsMachO(unsigned int version) {
  return Serve<short>(__func__, version)([] { return 1; });
}

}  // extern "C"
