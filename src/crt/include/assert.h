/* For the C libraries inside orvsys.dll: their assertions are left to their authors and do nothing here. */
#pragma once
#define assert(condition) ((void)0)
