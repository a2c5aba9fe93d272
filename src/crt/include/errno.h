/* For the C libraries inside orvsys.dll: none of the code that is built sets errno. */
#pragma once
static int errno;
