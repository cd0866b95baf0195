#include "host/engine/host_call.h"

namespace sok {

Engine gEngine;

namespace {

void Append(HostCall& call, const std::string& text) {
  if (!call.arguments.empty()) call.arguments += ' ';
  call.arguments += text;
}

}  // namespace

void Describe(HostCall& call, bool as_text, long number) {
  if (as_text) Append(call, std::to_string(number));
}

void Describe(HostCall& call, bool as_text, const void* handle) {
  if (as_text) Append(call, handle != nullptr ? "handle" : "0");
}

void Describe(HostCall& call, bool as_text, const RecordArgument& record) {
  call.tag = record.tag;
  call.id = record.id;
  call.buffer = record.buffer;
  call.size = record.size;
  if (!as_text) return;
  Append(call, FourCharacters(record.tag));
  Append(call, record.id != nullptr ? KeyText(record.tag, *record.id) : "null");
  if (record.size != nullptr) Append(call, std::to_string(*record.size));
}

void Describe(HostCall& call, bool as_text, const FrameArgument& frame) {
  call.frame = frame.frame;
  if (!as_text) return;
  if (frame.frame == nullptr) return Append(call, "null");
  if (!frame.any && !gEngine.IsOut(frame.frame)) return Append(call, "unknown");
  const FramePlace place = PlaceOf(*frame.frame);
  Append(call, std::to_string(place.instrument) + "," + std::to_string(place.measure) + "," +
                   std::to_string(place.layer) + " " + std::to_string(frame.frame->count));
}

void Describe(HostCall& call, bool as_text, Text text) {
  if (as_text) Append(call, text != nullptr ? '"' + Utf8FromMacRoman(text) + '"' : "null");
}

void Describe(HostCall& call, bool as_text, Text16 text) {
  if (as_text) Append(call, text != nullptr ? '"' + Utf8FromUtf16(text) + '"' : "null");
}

}  // namespace sok
