#include "host/engine/engine.h"

#include <sys/mman.h>

#include <algorithm>
#include <cstdlib>
#include <iterator>
#include <limits>
#include <new>
#include <numeric>
#include <utility>

// The engine shares no code with the extensions' kit, which has the other definition.
EXTGF2005a::~EXTGF2005a() {
  delete[] entries;
  delete[] second;
}

namespace sok {

namespace {

bool IsNote(const EXENTRY& entry) { return (entry.flags & kEntryIsNote) != 0; }

unsigned short Word(short number) { return static_cast<unsigned short>(number); }

constexpr std::size_t kGuardedSize = 4096;  // at least a page, where pages are of the usual size

// An empty frame, and its end. A guarded one's address is never used again.
EXTGF2005a* NewFrame(bool guarded) {
  if (!guarded) return new EXTGF2005a{};
  void* const page = mmap(nullptr, kGuardedSize, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
  if (page == MAP_FAILED) throw std::bad_alloc();
  return new (page) EXTGF2005a{};
}

void DeleteFrame(const EXTGF2005a* frame, bool guarded) {
  if (!guarded) {
    delete frame;
    return;
  }
  frame->~EXTGF2005a();
  void* const page = const_cast<EXTGF2005a*>(frame);
  const int kind = MAP_PRIVATE | MAP_ANONYMOUS | MAP_FIXED;
  if (mmap(page, kGuardedSize, PROT_NONE, kind, -1, 0) == MAP_FAILED) std::abort();  // it would be touched unseen
}

}  // namespace

FramePlace PlaceOf(const EXTGF2005a& frame) {
  return {static_cast<short>(frame.key[0]), static_cast<short>(frame.key[1]), static_cast<short>(frame.key[2])};
}

void Engine::Attach(Session* session) {
  for (const auto& frame : frames_) DeleteFrame(frame.first, guard_frames_);
  frames_.clear();
  before_edits_.clear();
  session_ = session;
  guard_frames_ = session != nullptr && session->guard_frames;
  if (session == nullptr) return;
  session->frames_held = 0;
  session->open_edits.clear();
  session->mass_edits_open = 0;
}

EXTGF2005a* Engine::LoadFrame(unsigned short list, short slot, short measure, short layer, short option) {
  const Document& document = *session_->document;
  const FramePlace place = {document.SlotToInst(slot, list), measure, layer};
  if (!document.Exists(place)) return nullptr;
  EXTGF2005a* const frame = NewFrame(guard_frames_);
  const unsigned short key[] = {Word(place.instrument), Word(measure), Word(layer), list, Word(slot), Word(option)};
  std::copy(std::begin(key), std::end(key), frame->key);
  if (const short count = document.EntryCount(place); count > 0) {
    frame->entries = new EXENTRY[static_cast<std::size_t>(count)]();
    frame->count = count;
    document.CopyEntries(place, frame->entries);
  }
  frames_.emplace(frame, EntryArray{frame->entries, frame->count});
  ++session_->frames_held;
  return frame;
}

bool Engine::FreeFrame(EXTGF2005a* frame) {
  if (frames_.erase(frame) == 0) return false;
  DeleteFrame(frame, guard_frames_);
  --session_->frames_held;
  return true;
}

std::optional<std::span<const EXENTRY>> Engine::EntriesOf(const EXTGF2005a* frame) const {
  if (frame == nullptr || frame->count < 0 || (frame->count > 0 && frame->entries == nullptr)) return std::nullopt;
  const auto out = frames_.find(frame);
  if (out != frames_.end() && frame->entries == out->second.entries && frame->count > out->second.count) {
    return std::nullopt;
  }
  const EXENTRY* const entries = frame->entries;
  return std::span(entries, static_cast<std::size_t>(frame->count));
}

bool Engine::SaveFrame(EXTGF2005a* frame) {
  const auto entries = EntriesOf(frame);
  if (!entries) return false;
  Document& document = *session_->document;
  const FramePlace place = PlaceOf(*frame);
  if (!document.SetEntries(place, {entries->begin(), entries->end()})) return false;
  document.CopyEntries(place, frame->entries);
  document.dirty = true;
  return true;
}

int Engine::FrameDuration(const EXTGF2005a* frame) const {
  const auto entries = EntriesOf(frame);
  if (!entries) return 0;
  if (entries->size() == 1 && entries->front().duration == kWholeRestDuration && !IsNote(entries->front())) {
    // A whole-measure rest lasts as long as its measure.
    if (const int measure = session_->document->MeasureDuration(PlaceOf(*frame).measure); measure > 0) return measure;
  }
  return std::accumulate(entries->begin(), entries->end(), 0,
                         [](int sum, const EXENTRY& entry) { return sum + entry.duration; });
}

void Engine::ReplaceEntries(EXTGF2005a* frame, std::span<const EXENTRY> entries) {
  EXENTRY* const replacement = entries.empty() ? nullptr : new EXENTRY[entries.size()]();
  std::copy(entries.begin(), entries.end(), replacement);
  delete[] frame->entries;
  frame->entries = replacement;
  frame->count = static_cast<short>(entries.size());
  frames_[frame] = {replacement, frame->count};
}

bool Engine::InsertEntries(EXTGF2005a* frame, short index, short count) {
  if (!IsOut(frame)) return false;
  const auto before = EntriesOf(frame);
  if (!before || index < 0 || index > frame->count || count <= 0 ||
      count > std::numeric_limits<short>::max() - frame->count) {
    return false;
  }
  std::vector<EXENTRY> entries(before->begin(), before->end());
  const auto first = entries.insert(entries.begin() + index, static_cast<std::size_t>(count), EXENTRY{});
  std::for_each(first, first + count, [&](EXENTRY& entry) { entry.number = session_->document->NewEntryNumber(); });
  ReplaceEntries(frame, entries);
  return true;
}

bool Engine::DeleteEntries(EXTGF2005a* frame, short index, short count) {
  if (!IsOut(frame)) return false;
  const auto before = EntriesOf(frame);
  if (!before || index < 0 || count <= 0 || count > frame->count - index) return false;
  std::vector<EXENTRY> entries(before->begin(), before->end());
  entries.erase(entries.begin() + index, entries.begin() + index + count);
  ReplaceEntries(frame, entries);
  return true;
}

void Engine::ReduceEntries(EXTGF2005a* frame) {
  if (!IsOut(frame)) return;
  const auto before = EntriesOf(frame);
  if (!before) return;
  std::vector<EXENTRY> entries(before->begin(), before->end());
  std::erase_if(entries, [](const EXENTRY& entry) { return entry.duration == 0 && !IsNote(entry); });
  if (entries.size() != before->size()) ReplaceEntries(frame, entries);
}

void Engine::OpenEdit(std::string text) {
  before_edits_.push_back(*session_->document);
  session_->open_edits.push_back(std::move(text));
}

bool Engine::CloseEdit(bool keep) {
  if (before_edits_.empty()) return false;
  if (!keep) *session_->document = std::move(before_edits_.back());
  before_edits_.pop_back();
  session_->open_edits.pop_back();
  return true;
}

}  // namespace sok
