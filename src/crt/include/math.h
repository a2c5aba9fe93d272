/* For the C libraries inside orvsys.dll: the one function that they use, isnan. */
#pragma once
#define isnan(number) __builtin_isnan(number)
