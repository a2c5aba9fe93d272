/* For the C libraries inside orvsys.dll: their assertions are their authors' to check. */
#pragma once
#define assert(condition) ((void)0)
