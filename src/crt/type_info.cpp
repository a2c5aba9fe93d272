// The table of functions that the descriptions of polymorphic types point to, where these are compiled with
// run-time type information (/GR, the compilers' default). Nobody calls through it: typeid and dynamic_cast
// need a runtime, and do not link.

extern "C" {

extern void (*const OrvTypeInfoTable[1])() asm("??_7type_info@@6B@");
void (*const OrvTypeInfoTable[1])() = {};

} // extern "C"
