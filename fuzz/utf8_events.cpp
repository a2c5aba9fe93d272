// Built into a library of its own that exports only ReadUtf8Events, since the parser's functions have the same
// names as those of the build for UTF-16.

#include "utf8_events.h"

#include <expat.h>

#include <string.h>

namespace
{

struct Context {
    Utf8Receiver receiver;
    void *opaque;

    void Give(Utf8Event event, const char *text, size_t length) const
    {
        receiver(opaque, event, text, static_cast<uint32_t>(length));
    }
};

void OnStart(void *opaque, const char *name, const char **attributes)
{
    const Context &context = *static_cast<const Context *>(opaque);
    context.Give(kUtf8Start, name, strlen(name));
    for (; *attributes; attributes += 2) {
        context.Give(kUtf8AttributeName, attributes[0], strlen(attributes[0]));
        context.Give(kUtf8AttributeValue, attributes[1], strlen(attributes[1]));
    }
}

void OnEnd(void *opaque, const char *name)
{
    static_cast<const Context *>(opaque)->Give(kUtf8End, name, strlen(name));
}

void OnText(void *opaque, const char *text, int length)
{
    static_cast<const Context *>(opaque)->Give(kUtf8Text, text, static_cast<size_t>(length));
}

} // namespace

extern "C" __attribute__((visibility("default"))) bool ReadUtf8Events(const uint8_t *bytes, uint32_t size,
                                                                      Utf8Receiver receiver, void *opaque)
{
    Context context = {receiver, opaque};
    const XML_Parser parser = XML_ParserCreate(nullptr);
    XML_SetUserData(parser, &context);
    XML_SetElementHandler(parser, OnStart, OnEnd);
    XML_SetCharacterDataHandler(parser, OnText);
    const bool isWellFormed = XML_Parse(parser, reinterpret_cast<const char *>(bytes), static_cast<int>(size),
                                        XML_TRUE) == XML_STATUS_OK;
    XML_ParserFree(parser);
    return isWellFormed;
}
