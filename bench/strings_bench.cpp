// The UTF-16 string functions beside ICU's, at 10, 100 and 1,000 units. The text is Latin with the odd accent; what is
// searched for stands at its very end.
#include <benchmark/benchmark.h>
#include <unicode/ustring.h>

#include <string>
#include <vector>

#include "SokExtShared/LIB/strings/utf16_strings.h"

namespace {

std::u16string TextOf(std::size_t length) {
  const std::u16string words = u"Violoncello e contrabbasso, più mosso ma non troppo; ";
  std::u16string text;
  while (text.size() < length) text += words;
  text.resize(length);
  if (length >= 3) text.replace(length - 3, 3, u"xyz");
  return text;
}

constexpr unsigned short kEnd[] = {'x', 'y', 'z', 0};

// Runs `call` on the text and an equal copy of it, as units of type `Unit`.
template <typename Unit, typename Call>
void Run(benchmark::State& state, Call call) {
  const std::u16string text = TextOf(static_cast<std::size_t>(state.range(0)));
  std::vector<Unit> first(text.begin(), text.end());
  first.push_back(0);
  const std::vector<Unit> second = first;
  for (auto _ : state) {
    const Unit* left = first.data();
    const Unit* right = second.data();
    benchmark::DoNotOptimize(left);
    benchmark::DoNotOptimize(right);
    benchmark::DoNotOptimize(call(left, right));
  }
}

// One row a function: the kit's, then ICU's.
#define PAIR(function, kit, icu)                                                                                      \
  void Kit_##function(benchmark::State& state) {                                                                      \
    Run<unsigned short>(state, []([[maybe_unused]] const unsigned short* left,                                        \
                                  [[maybe_unused]] const unsigned short* right) { return kit; });                     \
  }                                                                                                                   \
  void Icu_##function(benchmark::State& state) {                                                                      \
    Run<char16_t>(state,                                                                                              \
                  []([[maybe_unused]] const char16_t* left, [[maybe_unused]] const char16_t* right) { return icu; }); \
  }                                                                                                                   \
  BENCHMARK(Kit_##function)->Arg(10)->Arg(100)->Arg(1000);                                                            \
  BENCHMARK(Icu_##function)->Arg(10)->Arg(100)->Arg(1000)

PAIR(strlen, sx_strlen(left), u_strlen(left));
PAIR(strcmp, sx_strcmp(left, right), u_strcmp(left, right));
PAIR(strncmp, sx_strncmp(left, right, 5000), u_strncmp(left, right, 5000));
PAIR(strchr, sx_strchr(left, u'z'), u_strchr(left, u'z'));
PAIR(strstr, sx_strstr(left, kEnd), u_strstr(left, u"xyz"));

}  // namespace
