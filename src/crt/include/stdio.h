/* For the C libraries inside orvsys.dll: their debug output is discarded. */
#pragma once
#define stderr 0
#define fprintf(...) ((void)0)
