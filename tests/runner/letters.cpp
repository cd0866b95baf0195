// Scores as letters, for transcripts (*.t): `letters Flute=n.w Oboe=..n` prints a score, `letters` reads one from stdin
// and prints the letters of each part. `numbers=6,1-0,7` gives printed measure numbers.
#include <iostream>
#include <iterator>
#include <sstream>
#include <string>

#include "tests/runner/sokrun_process.h"

int main(int count, char** arguments) {
  std::vector<PartText> parts;
  std::vector<std::string> numbers;
  for (const std::string& word : std::vector<std::string>(arguments + 1, arguments + count)) {
    const auto sign = word.find('=');
    const std::string name = word.substr(0, sign), value = word.substr(sign + 1);
    std::istringstream list(value);
    if (name != "numbers") parts.push_back({name, value});
    for (std::string number; name == "numbers" && std::getline(list, number, ',');) numbers.push_back(number);
  }
  if (!parts.empty()) {
    std::cout << ScoreText(parts, numbers);
    return 0;
  }
  for (const std::string& part : Letters(std::string(std::istreambuf_iterator<char>(std::cin), {}))) {
    std::cout << part << '\n';
  }
}
