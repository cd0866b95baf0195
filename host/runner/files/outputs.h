// Where results go: the names of the files that a run writes, and the form that a name asks for.
#pragma once

#include <string>
#include <vector>

#include "host/runner/files/input.h"
#include "host/runner/run/options.h"

namespace sok {

// Where each input's result goes; empty texts where it goes nowhere, or where `run` was not told. Throws UsageError for
// what cannot be, as two results under one name, or a page over a result.
std::vector<std::string> PlanOutputs(const RunOptions& options, const std::vector<Input>& inputs);

// Makes the folders that results go to. Throws Error.
void MakeOutputFolders(const RunOptions& options, const std::vector<std::string>& outputs);

// Whether two paths are the same file, however they are spelled, there or not.
bool SameFile(const std::string& left, const std::string& right);

// A score's file in the form that the output's name asks for: compressed for .mxl, plain for .musicxml and .xml, else
// as it is. Throws Error.
std::string InFormOf(const std::string& output, std::string bytes);

}  // namespace sok
