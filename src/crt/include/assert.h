/* For the C libraries inside orvsys.dll: their assertions are left to their authors and compile to nothing. */
#pragma once
#define assert(condition) ((void)0)
