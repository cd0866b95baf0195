/// @file
/// Helpers for zero-terminated 8-bit strings.
///
/// Comparisons ignore case by the C library's toupper. Bytes count as signed: those from 0x80 on are negative, have no
/// other case, and come before all others. No function reports an error; null is outside the contract.
#pragma once

/// The upper case of a byte that counts as signed. Negative bytes, which toupper must not be asked about, stay as they
/// are.
int UpperByte(char byte);

/// Compare without regard to case: -1, 0 or 1. The second looks at most at `count` bytes.
///@{
int stricmp(const char* left, const char* right);
int strnicmp(const char* left, const char* right, unsigned long count);
///@}

/// Writes the number in decimal with a terminator: up to 12 bytes.
void num2str(int number, char* text);
