#include "host/engine/record_store.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <random>
#include <string>

namespace {

using sok::KeyView;
using sok::RecordStore;
using Fields = std::vector<long>;

struct ViewCase {
  unsigned int tag;
  KeyView view;
};
constexpr ViewCase kViews[] = {
    {0x6F743231, KeyView::kOther},        // 'ot21'
    {0x534F4953, KeyView::kOther},        // 'SOIS'
    {0x7478626C, KeyView::kOther},        // 'txbl'
    {0x4F085378, KeyView::kOther},        // 'O', 8, 'Sx'
    {0x53444E47, KeyView::kDetail},       // 'SDNG'
    {0x64746D74, KeyView::kDetail},       // 'dtmt'
    {0x44034378, KeyView::kDetail},       // 'D', 3, 'Cx'
    {0x534F5343, KeyView::kDetailExtra},  // 'SOSC'
    {0x65644578, KeyView::kEntryDetail},  // 'edEx'
    {0x45024168, KeyView::kEntryDetail},  // 'E', 2, 'Ah'
    {0x65746545, KeyView::kEntry},        // 'eteE'
    {0x70664C41, KeyView::kGlobal},       // 'pfLA'
};
constexpr unsigned int kOtherTag = kViews[0].tag;

Fields FieldsOf(KeyView view, const EDataID& id) {
  if (view == KeyView::kOther) return {id.other.cmper, id.other.subIndex};
  if (view == KeyView::kDetail) return {id.detail.cmper, id.detail.secondCmper, id.detail.subIndex};
  if (view == KeyView::kDetailExtra) return {id.detail.cmper, id.detail.secondCmper, id.detail.extraValue};
  if (view == KeyView::kEntryDetail) return {id.entryDetail.entryNum, id.entryDetail.subIndex};
  if (view == KeyView::kEntry) return {id.entry.entryNum};
  return {id.global.instance};
}

// The same rules over keys that are lists of numbers.
struct Model {
  std::map<unsigned int, std::map<Fields, std::string>> records;

  bool Create(unsigned int tag, KeyView view, Fields& key, const std::string& bytes) {
    auto& table = records[tag];
    const bool has_entry = view == KeyView::kEntryDetail || view == KeyView::kEntry;
    const bool ends_signed = view != KeyView::kDetailExtra;
    Fields chosen = key;
    for (std::size_t i = has_entry ? 1 : 0; i < key.size(); ++i) {
      const bool is_signed = i + 1 == key.size();
      if (is_signed ? !ends_signed || key[i] != -1 : key[i] != 0xFFFF) continue;
      chosen[i] = is_signed ? 0 : 1;
      for (const auto& [used, _] : table) {
        const bool same = std::equal(used.begin(), used.begin() + static_cast<long>(i), chosen.begin());
        if (same && used[i] >= chosen[i] && used[i] < 0xFFFE) chosen[i] = used[i] + 1;
      }
    }
    if (!table.emplace(chosen, bytes).second) return false;
    key = chosen;
    return true;
  }

  bool Delete(unsigned int tag, KeyView view, const Fields& key) {
    auto& table = records[tag];
    if (table.erase(key) == 0) return false;
    if (view == KeyView::kEntry || view == KeyView::kGlobal) return true;
    std::map<Fields, std::string> moved;
    for (const auto& [used, bytes] : table) {
      Fields place = used;
      if (std::equal(key.begin(), key.end() - 1, used.begin()) && used.back() > key.back()) --place.back();
      moved[place] = bytes;
    }
    table = moved;
    return true;
  }
};

// Few numbers, so that keys meet; the odd ones are those where signs and choices matter.
EDataID RandomKey(KeyView view, std::mt19937& random) {
  static constexpr unsigned short kNumbers[] = {0, 1, 2, 0x7FFF, 0x8000, 0xFFFE, 0xFFFF};
  static constexpr int kEntries[] = {-1, 0, 1, 0xFFFF, 0x7FFFFFFF};
  static constexpr short kSubIndexes[] = {-1, -1, 0, 1, 2, 3};
  EDataID id = {};
  const short sub = kSubIndexes[random() % std::size(kSubIndexes)];
  if (view == KeyView::kOther) {
    id.other = {kNumbers[random() % 7], sub};
  } else if (view == KeyView::kDetail || view == KeyView::kDetailExtra) {
    id.detail.cmper = kNumbers[random() % 7];
    id.detail.secondCmper = kNumbers[random() % 7];
    id.detail.extraValue = sub;
  } else if (view == KeyView::kGlobal) {
    id.global.instance = sub;
  } else {
    id.entryDetail = {kEntries[random() % 5], sub};
  }
  return id;
}

// A wrong order, a key field packed in the wrong place, or a move that reaches the next number shows here.
TEST(RecordStore, BehavesAsTheModelUnderRandomOperations) {
  std::mt19937 random(7);
  RecordStore store;
  Model model;
  for (int step = 0; step < 20000; ++step) {
    const auto& [tag, view] = kViews[random() % std::size(kViews)];
    EDataID id = RandomKey(view, random);
    Fields key = FieldsOf(view, id);
    auto& table = model.records[tag];
    std::string bytes(random() % 5, static_cast<char>('a' + random() % 26));
    std::string buffer(3, '?');
    const auto cut = [](const std::string& text) { return (text + "???").substr(0, 3); };
    SCOPED_TRACE(step);
    switch (random() % 6) {
      case 0:
        ASSERT_TRUE(store.Save(tag, id, bytes.data(), static_cast<int>(bytes.size())));
        table[key] = bytes;
        break;
      case 1:
        ASSERT_EQ(store.Create(tag, id, bytes.data(), static_cast<int>(bytes.size())),
                  model.Create(tag, view, key, bytes));
        break;
      case 2:
        ASSERT_EQ(store.Delete(tag, id), model.Delete(tag, view, key));
        break;
      case 3: {
        int size = 3;
        ASSERT_EQ(store.Load(tag, id, buffer.data(), &size), table.contains(key));
        ASSERT_EQ(buffer, table.contains(key) ? cut(table[key]) : "???");
        ASSERT_EQ(size, table.contains(key) ? static_cast<int>(table[key].size()) : 3);
        break;
      }
      default: {
        const bool forward = random() % 2 == 0;
        auto at = forward ? table.upper_bound(key) : table.lower_bound(key);
        const bool found = forward ? at != table.end() : at != table.begin();
        ASSERT_EQ(forward ? store.Next(tag, id, buffer.data(), 3) : store.Previous(tag, id, buffer.data(), 3), found);
        if (!found) break;
        if (!forward) --at;
        key = at->first;
        ASSERT_EQ(buffer, cut(at->second));
      }
    }
    ASSERT_EQ(FieldsOf(view, id), key);
  }
  std::map<unsigned int, std::map<Fields, std::string>> stored;
  store.ForEach([&](unsigned int tag, const EDataID& id, std::span<const unsigned char> bytes) {
    stored[tag][FieldsOf(sok::ViewOf(tag), id)] = std::string(bytes.begin(), bytes.end());
  });
  std::erase_if(model.records, [](const auto& table) { return table.second.empty(); });
  EXPECT_EQ(stored, model.records);
}

TEST(RecordStore, RefusesWhatItCannotReadOrFill) {
  RecordStore store;
  EDataID id = {};
  char byte = 'x';
  int size = -1;
  EXPECT_FALSE(store.Save(kOtherTag, id, &byte, -1));
  EXPECT_FALSE(store.Create(kOtherTag, id, nullptr, 1));
  ASSERT_TRUE(store.Save(kOtherTag, id, &byte, 1));
  EXPECT_FALSE(store.Load(kOtherTag, id, &byte, nullptr));
  EXPECT_FALSE(store.Load(kOtherTag, id, &byte, &size));
  EXPECT_TRUE(store.Load(kOtherTag, id, nullptr, &size));  // the size only, whatever stood there
  EXPECT_EQ(size, 1);
}

}  // namespace
