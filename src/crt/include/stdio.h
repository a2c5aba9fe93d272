/* For the C libraries inside orvsys.dll: debug output goes nowhere. */
#pragma once
#define stderr 0
#define fprintf(...) ((void)0)
