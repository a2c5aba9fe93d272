/* For the C libraries inside orvsys.dll: nothing of this header is used. */
#pragma once
