// The function table of std::type_info. The descriptions of polymorphic types point to it when code is
// compiled with run-time type information (/GR, the compilers' default). No code calls through it: typeid and
// dynamic_cast need a runtime, so programs that use them do not link.

extern "C" {

extern void (*const OrvTypeInfoTable[1])() asm("??_7type_info@@6B@");
void (*const OrvTypeInfoTable[1])() = {};

} // extern "C"
