/* For the C libraries inside orvsys.dll: they include this header but use nothing of it. */
#pragma once
