// Reads the text format of the system's registry editor, version 5.00, entry by entry.
//
// A file is one text: the header, then keys in brackets, each followed by its values. Roots have their long
// or short names. A minus sign before a key, or in place of a value's data, means deletion. Blank lines, and
// the text after a semicolon outside quotation marks, are ignored. Two rules keep unusual names exact. A key
// ends at the last bracket of its line. A text in quotation marks may continue over the end of a line; in it
// a backslash must be followed by a backslash or a quotation mark.

#pragma once

#include "reg_location.h"

namespace orvtool
{

struct RegFileEntry {
    enum Kind { kKey, kDeletedKey, kValue, kDeletedValue };

    Kind kind = kKey;
    uint32_t line = 0;

    // The key; valid until the next key.
    OrvBasWinRegistryRootType root = OrvRegistryNoRoot;
    OrvBasWinRegistryHandle::Name path;

    // The value; valid until the next entry.
    OrvBasWinRegistryHandle::Name name;
    OrvBasWinRegistryValueType type = OrvRegistryNone;
    const uint8_t *bytes = nullptr;
    uint32_t size = 0;
};

class RegFileReader
{
public:
    /// The characters must outlive the reader.
    RegFileReader(const wchar_t *text, uint32_t length) : next_(text), last_(text + length) {}

    /// Reads the next entry. Clears `found` after the last one.
    ///
    /// Returns 0; ORV_E_INVALID_DATA, and then GetProblem and GetLine tell what is wrong and in which line;
    /// ORV_E_OUT_OF_MEMORY.
    OrvResult Next(RegFileEntry &entry, bool &found);

    const wchar_t *GetProblem() const { return problem_; }

    /// The number, from 1, of the line that was read last, or in which the problem begins.
    uint32_t GetLine() const { return line_; }

private:
    OrvResult ReadHeader();
    OrvResult ReadKey(RegFileEntry &entry);
    OrvResult ReadValue(RegFileEntry &entry);
    OrvResult ReadData(RegFileEntry &entry);
    OrvResult ReadQuoted(OrvUtf16CharHeapBuffer &text);
    OrvResult ReadDWord(RegFileEntry &entry);
    OrvResult ReadBytes(RegFileEntry &entry);
    OrvResult ReadLineEnd();
    OrvResult Fail(const wchar_t *problem);

    bool IsAtEnd() const { return next_ == last_; }
    bool IsAt(wchar_t character) const { return next_ != last_ && *next_ == character; }
    bool Take(const wchar_t *word);
    bool TakeHexNumber(uint32_t mostDigits, uint32_t &number);
    void SkipBlanks();
    void SkipLine();

    const wchar_t *next_;
    const wchar_t *last_;
    uint32_t line_ = 0; ///< 0: the header has not been read
    const wchar_t *problem_ = nullptr;
    bool isKeyOpen_ = false; ///< values may follow
    RegistryLocation key_;
    OrvUtf16CharHeapBuffer name_;
    OrvUtf16CharHeapBuffer text_;
    OrvMbCharHeapBuffer bytes_;
};

} // namespace orvtool
