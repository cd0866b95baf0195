// Stripping caret commands beside a bare copy of the same text, and decoding into eu16string beside ICU's converters
// (opened once), at 10, 100 and 1,000 units.
#include <benchmark/benchmark.h>
#include <unicode/ucnv.h>

#include <string>
#include <vector>

#include "SokExtShared/LIB/strings/eu16string.h"
#include "SokExtShared/LIB/strings/utf16_strings.h"
#include "SokExtShared/LIB/text/caret_commands.h"

namespace {

std::string Repeated(const std::string& piece, std::size_t length) {
  std::string text;
  while (text.size() < length) text += piece;
  text.resize(length);
  return text;
}

std::vector<unsigned short> PlainText(benchmark::State& state) {
  const std::string text =
      Repeated("Violoncello e contrabbasso, piu mosso ma non troppo; ", static_cast<std::size_t>(state.range(0)));
  std::vector<unsigned short> units(text.begin(), text.end());
  units.push_back(0);
  return units;
}

void Kit_strip(benchmark::State& state) {
  std::vector<unsigned short> text = PlainText(state);  // stays as it is: there is nothing to strip
  for (auto _ : state) {
    txt_strip_carets(text.data());
    benchmark::ClobberMemory();
  }
}

void Copy_strip(benchmark::State& state) {
  const std::vector<unsigned short> text = PlainText(state);
  std::vector<unsigned short> copy(text.size());
  for (auto _ : state) {
    const unsigned short* from = text.data();
    benchmark::DoNotOptimize(from);
    sx_strcpy(copy.data(), from);
    benchmark::ClobberMemory();
  }
}

template <typename Byte>
void Decode(benchmark::State& state, const std::string& piece) {
  const std::string text = Repeated(piece, static_cast<std::size_t>(state.range(0)));
  for (auto _ : state) {
    const eu16string decoded(reinterpret_cast<const Byte*>(text.c_str()));
    benchmark::DoNotOptimize(decoded.data());
  }
}

void DecodeByIcu(benchmark::State& state, const std::string& piece, const char* encoding) {
  const std::string text = Repeated(piece, static_cast<std::size_t>(state.range(0)));
  UErrorCode error = U_ZERO_ERROR;
  UConverter* const converter = ucnv_open(encoding, &error);
  for (auto _ : state) {
    std::u16string decoded(text.size(), u'\0');
    error = U_ZERO_ERROR;
    decoded.resize(static_cast<std::size_t>(
        ucnv_toUChars(converter, decoded.data(), static_cast<int32_t>(decoded.size()), text.c_str(), -1, &error)));
    benchmark::DoNotOptimize(decoded.data());
  }
  ucnv_close(converter);
}

const char kMacRoman[] = "Tr\x8Fs expressif, g\x8Ama ";
const char kUtf8[] = "Ge\xC3\xA4nges, d\xC3\xA9sol ";  // no length cuts a character

void Kit_macroman(benchmark::State& state) { Decode<char>(state, kMacRoman); }
void Icu_macroman(benchmark::State& state) { DecodeByIcu(state, kMacRoman, "macintosh"); }
void Kit_utf8(benchmark::State& state) { Decode<unsigned char>(state, kUtf8); }
void Icu_utf8(benchmark::State& state) { DecodeByIcu(state, kUtf8, "UTF-8"); }

BENCHMARK(Kit_strip)->Arg(10)->Arg(100)->Arg(1000);
BENCHMARK(Copy_strip)->Arg(10)->Arg(100)->Arg(1000);
BENCHMARK(Kit_macroman)->Arg(10)->Arg(100)->Arg(1000);
BENCHMARK(Icu_macroman)->Arg(10)->Arg(100)->Arg(1000);
BENCHMARK(Kit_utf8)->Arg(10)->Arg(100)->Arg(1000);
BENCHMARK(Icu_utf8)->Arg(10)->Arg(100)->Arg(1000);

}  // namespace
