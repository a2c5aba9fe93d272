/* For the C libraries inside orvsys.dll: one test. */
#pragma once
#define isnan(number) __builtin_isnan(number)
