// The four memory functions that ntdll.dll exports; the compiler knows them as built-in functions.

#pragma once

#include <stddef.h>

extern "C" {

int __cdecl memcmp(const void *left, const void *right, size_t size);
void *__cdecl memcpy(void *target, const void *source, size_t size);
void *__cdecl memmove(void *target, const void *source, size_t size);
void *__cdecl memset(void *target, int value, size_t size);

} // extern "C"
