/* For the C libraries inside orvsys.dll: the functions of this header that ntdll.dll exports. */
#pragma once
#include <stddef.h>

void *memcpy(void *target, const void *source, size_t size);
void *memmove(void *target, const void *source, size_t size);
void *memset(void *target, int value, size_t size);
int memcmp(const void *left, const void *right, size_t size);
size_t strlen(const char *text);
