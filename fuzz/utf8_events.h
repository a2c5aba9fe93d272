// The events of a document from the same parser built for UTF-8, to compare with those of the reader.

#pragma once

#include <stdint.h>

/// What follows, as UTF-8 that is counted.
enum Utf8Event : uint32_t { kUtf8Start, kUtf8AttributeName, kUtf8AttributeValue, kUtf8End, kUtf8Text };

typedef void (*Utf8Receiver)(void *opaque, Utf8Event event, const char *text, uint32_t length);

/// Whether the document is well-formed; the events up to the fault are given in any case.
extern "C" bool ReadUtf8Events(const uint8_t *bytes, uint32_t size, Utf8Receiver receiver, void *opaque);
