#include "host/engine/document.h"

#include <algorithm>
#include <limits>
#include <utility>

namespace sok {

namespace {

constexpr short kMostNumbers = std::numeric_limits<short>::max();

constexpr std::uint64_t Packed(const FramePlace& place) {
  return static_cast<std::uint64_t>(place.instrument) << 32 | static_cast<std::uint64_t>(place.measure) << 16 |
         static_cast<std::uint64_t>(place.layer);
}

constexpr FramePlace Unpacked(std::uint64_t packed) {
  return {static_cast<short>(packed >> 32), static_cast<short>(packed >> 16), static_cast<short>(packed)};
}

short IndexOfNumber(std::span<const EXENTRY> entries, int number) {
  const auto at = std::find_if(entries.begin(), entries.end(), [&](const EXENTRY& e) { return e.number == number; });
  return at == entries.end() ? short{-1} : static_cast<short>(at - entries.begin());
}

template <typename Container>
const auto* At(const Container& container, int index) {
  return index >= 0 && static_cast<std::size_t>(index) < container.size() ? &container[static_cast<std::size_t>(index)]
                                                                          : nullptr;
}

// The index of `name` in `names`, where it is added when it is missing and there is room.
short AddName(std::vector<std::string>& names, std::string_view name, bool once) {
  const auto at = std::find(names.begin(), names.end(), name);
  if (once && at != names.end()) return static_cast<short>(at - names.begin());
  if (names.size() >= static_cast<std::size_t>(kMostNumbers)) return -1;
  names.emplace_back(name);
  return static_cast<short>(names.size() - 1);
}

}  // namespace

short Document::AddStaff() {
  if (staff_count_ == kMostNumbers) return 0;
  staff_lists_[0].push_back(++staff_count_);
  return staff_count_;
}

short Document::StaffCount() const { return staff_count_; }

void Document::SetStaffList(unsigned short list, std::vector<short> instruments) {
  staff_lists_[list] = std::move(instruments);
}

short Document::SlotToInst(short slot, unsigned short list) const {
  const auto instruments = staff_lists_.find(list);
  if (instruments == staff_lists_.end()) return 0;
  const short* const instrument = At(instruments->second, slot - 1);
  return instrument != nullptr ? *instrument : short{0};
}

short Document::InstToSlot(short instrument, unsigned short list) const {
  const auto found = staff_lists_.find(list);
  if (instrument <= 0 || found == staff_lists_.end()) return 0;
  const std::vector<short>& instruments = found->second;
  const auto at = std::find(instruments.begin(), instruments.end(), instrument);
  const auto slot = at - instruments.begin() + 1;
  return at == instruments.end() || slot > kMostNumbers ? short{0} : static_cast<short>(slot);
}

short Document::AddMeasure(int duration) {
  if (MeasureCount() == kMostNumbers) return 0;
  measure_durations_.push_back(duration);
  return MeasureCount();
}

short Document::MeasureCount() const { return static_cast<short>(measure_durations_.size()); }

int Document::MeasureDuration(short measure) const {
  const int* const duration = At(measure_durations_, measure - 1);
  return duration != nullptr ? *duration : 0;
}

void Document::SetLayerShown(short layer, bool shown) {
  if (layer >= 0 && layer < kLayers) layer_shown_[layer] = shown;
}

bool Document::LayerShown(short layer) const { return layer >= 0 && layer < kLayers && layer_shown_[layer]; }

bool Document::Exists(const FramePlace& place) const {
  return place.instrument > 0 && place.instrument <= staff_count_ && place.measure > 0 &&
         static_cast<std::size_t>(place.measure) <= measure_durations_.size() && place.layer >= 0 &&
         place.layer < kLayers && (source_ == nullptr || source_->Has(place));
}

void Document::SetEntrySource(const EntrySource* source) {
  source_ = source;
  if (source != nullptr) last_entry_number_ = std::max(last_entry_number_, source->LastNumber());
}

const std::vector<EXENTRY>* Document::FindSet(const FramePlace& place) const {
  const auto frame = set_frames_.find(Packed(place));
  return frame == set_frames_.end() ? nullptr : &frame->second;
}

short Document::EntryCount(const FramePlace& place) const {
  if (!Exists(place)) return 0;
  if (const auto* const entries = FindSet(place)) return static_cast<short>(entries->size());
  return source_ != nullptr ? source_->Count(place) : short{0};
}

void Document::CopyEntries(const FramePlace& place, EXENTRY* entries) const {
  if (const auto* const set = FindSet(place)) {
    std::copy(set->begin(), set->end(), entries);
  } else if (source_ != nullptr) {
    source_->Fill(place, entries);
  }
}

std::vector<EXENTRY> Document::Entries(const FramePlace& place) const {
  if (const auto* const set = FindSet(place)) return *set;
  std::vector<EXENTRY> entries(static_cast<std::size_t>(EntryCount(place)));
  if (!entries.empty()) CopyEntries(place, entries.data());
  return entries;
}

bool Document::SetEntries(const FramePlace& place, std::vector<EXENTRY> entries) {
  if (!Exists(place) || entries.size() > static_cast<std::size_t>(kMostNumbers)) return false;
  for (const EXENTRY& entry : entries) {
    if (entry.noteCount < 0 || entry.noteCount > EXENTRY::kMostNotes) return false;
  }
  const std::uint64_t packed = Packed(place);
  const std::vector<EXENTRY> left = waiting_.empty() ? std::vector<EXENTRY>() : Entries(place);
  std::vector<EXENTRY>& frame = set_frames_[packed];  // from here on the source's entries no longer count
  for (const EXENTRY& entry : frame) number_places_.erase(static_cast<int>(entry.number));
  frame.clear();
  frame.reserve(entries.size());
  for (EXENTRY& entry : entries) {
    if (entry.number > last_entry_number_) made_up_numbers_.insert(int{entry.number});
    const int number = NumberFor(entry.number);
    last_entry_number_ = std::max(last_entry_number_, number);
    const auto origin = source_ != nullptr ? source_->Find(number) : std::nullopt;
    if (!origin || origin->place != place) number_places_[number] = packed;
    entry.number = number;
    frame.push_back(entry);
  }
  for (const EXENTRY& entry : left) GiveBackNumber(entry.number);
  return true;
}

// An entry that stands elsewhere, too, gets a number of its own, for as long as it does.
int Document::NumberFor(int wanted) {
  const auto stand_in = stand_ins_.find(wanted);
  const int own = stand_in == stand_ins_.end() ? wanted : stand_in->second;
  if (own > 0 && !FindEntry(own)) return own;
  if (wanted > 0 && !FindEntry(wanted)) return wanted;
  const int number = NewEntryNumber();
  if (own > 0) {
    stand_ins_[number] = own;
    waiting_[own] = number;
  }
  return number;
}

// An entry whose own number is free now has moved, not been copied: it has it back.
void Document::GiveBackNumber(int own) {
  const auto waiting = waiting_.find(own);
  if (waiting == waiting_.end() || FindEntry(own)) return;
  const auto at = number_places_.find(waiting->second);
  if (at != number_places_.end()) {
    for (EXENTRY& entry : set_frames_.at(at->second)) {
      if (entry.number == waiting->second) entry.number = own;
    }
    number_places_[own] = at->second;
    number_places_.erase(waiting->second);
  }
  waiting_.erase(waiting);
}

void Document::ForEachSetFrame(const FrameVisitor& visit) const {
  std::vector<std::pair<std::uint64_t, std::span<const EXENTRY>>> frames;
  frames.reserve(set_frames_.size());
  for (const auto& [place, entries] : set_frames_) frames.emplace_back(place, entries);
  std::sort(frames.begin(), frames.end(), [](const auto& a, const auto& b) { return a.first < b.first; });
  for (const auto& [place, entries] : frames) visit(Unpacked(place), entries);
}

int Document::NewEntryNumber() {
  do {
    last_entry_number_ = last_entry_number_ == std::numeric_limits<int>::max() ? 1 : last_entry_number_ + 1;
  } while (FindEntry(last_entry_number_));
  return last_entry_number_;
}

std::optional<EntrySource::Position> Document::FindEntry(int number) const {
  if (const auto at = number_places_.find(number); at != number_places_.end()) {
    const FramePlace place = Unpacked(at->second);
    return EntrySource::Position{place, IndexOfNumber(set_frames_.at(at->second), number)};
  }
  if (source_ == nullptr) return std::nullopt;
  std::optional<EntrySource::Position> found = source_->Find(number);
  if (const auto* const set = found ? FindSet(found->place) : nullptr) {
    found->index = IndexOfNumber(*set, number);
    if (found->index < 0) return std::nullopt;
  }
  return found;
}

short Document::AddFont(std::string_view name) { return AddName(fonts_, name, true); }

short Document::FontNumber(std::string_view name) const {
  const auto at = std::find(fonts_.begin(), fonts_.end(), name);
  return at == fonts_.end() ? short{-1} : static_cast<short>(at - fonts_.begin());
}

const std::string* Document::FontName(short font) const { return At(fonts_, font); }

short Document::AddPart(std::string_view name) { return AddName(parts_, name, false); }

short Document::PartCount() const { return static_cast<short>(parts_.size() - 1); }

const std::string* Document::PartName(short part) const { return At(parts_, part); }

}  // namespace sok
