// The page that stands in for the platform's ANSI and OEM pages on the host.

#pragma once

enum class HostPage {
    kLatin1,
    kDoubleByte, ///< a byte from 0x81 on leads a second one
    kUtf8,
};

extern HostPage hostPage;
