// The registry, over the native interface alone.
//
//     OrvBasWinRegistryHandle key(OrvRegistryCurrentUser);
//     OrvResult result = key.OpenOrCreateKey(L"Software\\Example");
//     if (OrvSucceeded(result))
//         result = key.SetStringValue(L"blue", L"Colour"); // the value first, then its name
//     uint32_t width = 0;
//     if (OrvSucceeded(result))
//         result = key.GetDWordValueWithDefault(width, L"Width", 80);
//
// A handle names a key by a parent, which is a root or another handle, and by a path below that parent. A
// handle without an open key refers to its parent: a new handle made from HKEY_CURRENT_USER reads that key's
// values. "The current key" below means the open key, or else the current key of the parent. Opening starts
// from the parent, whatever key is open; all other operations start from the current key. After opening "a"
// and then "b", the handle stands for "b", a sibling of "a"; KeyExists("c") then asks for "b\c".
//
// Paths and names are counted or terminated, and may contain zeros; letter case does not matter. A path has
// no separator at its start. The empty name is the key's default value. For names of more than 32,766
// characters the result is ORV_E_INVALID_NAME.
//
// Some operations have a twin whose name ends in Transacted and which works inside a kernel transaction.
// Where the platform has no transactions, such a twin returns ORV_E_NOT_SUPPORTED, or false, and does
// nothing.
//
// A refusal by the platform is returned as its converted status, above all: ORV_E_FILE_NOT_FOUND when a key
// or value does not exist; ORV_E_ACCESS_DENIED; ORV_E_INVALID_HANDLE when the key's handle was closed by
// other means; 0xC00703FA (ERROR_KEY_DELETED) when the key was deleted meanwhile. For failures to open a root
// see OpenRegistryRoot. On failure nothing has changed, unless the operation says otherwise. Outputs must not
// overlap inputs.
//
// A handle has no lock. Any number of threads may use its current key at once, as long as no thread opens,
// closes, watches or changes the handle or a parent that the key belongs to. All handles of the process share
// the roots, which are opened on first use; any number of threads may do that at once.

#pragma once

#include "orv/base.h"
#include "orv/flags.h"
#include "orv/registry/registry_enumerator.h"
#include "orv/registry/registry_types.h"
#include "orv/sync/event.h"
#include "orv/text/heap_buffer.h"
#include "orv/text/interfaces.h"
#include "orv/thread/transaction.h"

namespace detail
{
class NativeHandle;
struct RegistryState;
} // namespace detail

/// A key, named by a parent and a path below it.
class OrvBasWinRegistryHandle
{
public:
    typedef OrvFlags<OrvBasWinRegistryViewModeValues> ViewMode; ///< the view; other bits are only stored
    typedef OrvStringRefBase<wchar_t> Name;                     ///< a path or a name
    typedef IOrvBackInserter<OrvStringRefBase<wchar_t>> NameInserter;  ///< takes names
    typedef IOrvEnumerator<OrvStringzRefBase<wchar_t>> NameEnumerator; ///< gives names

    // Lifetime and parents.

    /// Refers to a root, which is opened when it is needed.
    ORV_API explicit OrvBasWinRegistryHandle(OrvBasWinRegistryRootType root);

    /// Refers to the current key of `parent`, in the parent's view. The parent must outlive the handle.
    ORV_API explicit OrvBasWinRegistryHandle(OrvBasWinRegistryHandle &parent);
    OrvBasWinRegistryHandle(const OrvBasWinRegistryHandle &) = delete;
    OrvBasWinRegistryHandle &operator=(const OrvBasWinRegistryHandle &) = delete;

    /// CloseKey.
    ORV_API ~OrvBasWinRegistryHandle();

    /// Closes the key and refers to a root from now on. The view stays.
    ///
    /// Returns 0; ORV_E_INVALID_HANDLE for OrvRegistryNoRoot; ORV_E_INVALID_ARGUMENT for a value that is not
    /// a root; ORV_E_VIEW_ROOT when that root does not have the view. On failure nothing has changed.
    ORV_API OrvResult SetParent(OrvBasWinRegistryRootType root);

    /// Closes the key and refers to the current key of `parent` from now on, in the parent's view.
    ORV_API void SetParent(OrvBasWinRegistryHandle &parent);

    /// As SetParent, and opens the root at once.
    ///
    /// Returns as SetParent; ORV_E_OUT_OF_MEMORY; or the converted status when the root cannot be opened. On
    /// failure the handle is as it was.
    ORV_API OrvResult OpenRegistryRoot(OrvBasWinRegistryRootType root);

    /// Closes the open key and ends its watch. The handle refers to its parent again.
    ORV_API void CloseKey();

    /// Whether a key is open.
    ORV_API bool IsOpened() const;

    /// The handle's path below its parent: the path that was opened or loaded last, even if it is closed
    /// again; empty after a new parent was set. Returns 0 or the string's failure.
    ORV_API OrvResult GetCurrentKeyPath(IOrvString<wchar_t> &path) const;

    /// Gets the place of the current key: asks the platform for its native name and converts that to a root
    /// and a path below it, in upper case. Under "\REGISTRY\MACHINE", a path part "WOW6432NODE" is left out,
    /// and in `access`, the access mask of a request, 0x100 is flipped and 0x200 set. The keys of the calling
    /// user belong to HKEY_CURRENT_USER, or to HKEY_CLASSES_ROOT when the name ends in "_CLASSES"; the keys
    /// of other users belong to HKEY_USERS.
    ///
    /// Returns 0; ORV_E_NOT_PROVIDED for any other name; ORV_E_OUT_OF_MEMORY; the string's failure; or the
    /// converted status. On failure `root` and `access` are as they were.
    ORV_API OrvResult SplitCurrentKeyName(OrvBasWinRegistryRootType &root, IOrvString<wchar_t> &path,
                                          uint32_t &access) const;

    // Views.

    /// Whether the system has a 32-bit and a 64-bit view.
    ORV_API static bool IsWow64ViewModeSupported();

    /// "Wow6432Node".
    ORV_API static const wchar_t *GetWow6432NodeName();

    /// Selects the view in which keys are opened from now on. With OrvRegistryViewNode, "Wow6432Node" is
    /// inserted after the "SOFTWARE" of HKEY_LOCAL_MACHINE and, below HKEY_USERS, after the "Software" of a
    /// user or a user's "_Classes" key, unless it is there already; other keys are the same in both views.
    /// The whole path from the root decides, through every handle that has a key open.
    ///
    /// Returns 0; ORV_E_NOT_SUPPORTED when another view applies already: that of the open key or, without
    /// one, that of the parent handle; ORV_E_VIEW_NOT_SUPPORTED for OrvRegistryView64 and OrvRegistryView32
    /// on a system with one view; ORV_E_VIEW_ROOT for OrvRegistryViewNode below another root.
    ORV_API OrvResult SetViewMode(ViewMode mode);

    /// The view in which keys are opened.
    ORV_API ViewMode GetViewMode() const;

    // Keys. Paths to open are below the parent; paths of all other operations are below the current key.

    /// Opens the key at `path` below the parent, and creates every key that is missing on the way. Then
    /// closes the key that was open before.
    ///
    /// Returns 0 when the key was created; ORV_S_ALREADY_EXISTS when it was there; ORV_E_OUT_OF_MEMORY;
    /// otherwise the converted status. On failure the key that was open stays open, and keys on the way may
    /// have been created.
    ORV_API OrvResult OpenOrCreateKey(const Name &path, OrvWinRegistryRights rights = OrvRegistryAllAccess);
    ORV_API OrvResult OpenOrCreateKeyTransacted(OrvWinTransaction &transaction, const Name &path,
                                                OrvWinRegistryRights rights = OrvRegistryAllAccess);

    /// Opens the key at `path` below the parent. Then closes the key that was open before.
    ///
    /// Returns 0; ORV_E_KEY_NOT_FOUND when there is none; ORV_E_OUT_OF_MEMORY; otherwise the converted
    /// status.
    ORV_API OrvResult OpenKeyIfExists(const Name &path, OrvWinRegistryRights rights = OrvRegistryRead);
    ORV_API OrvResult OpenKeyIfExistsTransacted(OrvWinTransaction &transaction, const Name &path,
                                                OrvWinRegistryRights rights = OrvRegistryRead);

    /// Whether there is a key at `path`, even one that the caller may not open.
    ORV_API bool KeyExists(const Name &path);
    ORV_API bool KeyExistsTransacted(OrvWinTransaction &transaction, const Name &path);

    /// Creates the key at `path`, whose parent must exist. Returns 0; ORV_S_ALREADY_EXISTS when it was there,
    /// also for an empty path, which means the current key; otherwise the converted status.
    ORV_API OrvResult CreateKey(const Name &path);
    ORV_API OrvResult CreateKeyTransacted(OrvWinTransaction &transaction, const Name &path);

    /// The same, and creates every key that is missing on the way. On failure some may have been created.
    ORV_API OrvResult CreateKeys(const Name &path);
    ORV_API OrvResult CreateKeysTransacted(OrvWinTransaction &transaction, const Name &path);

    /// Deletes the key at `path`, or the current key when the path is empty; with `recursive`, also all keys
    /// below it, deepest first. It is not a failure when someone else deletes a key below it meanwhile. If
    /// the key is a symbolic link, the link is deleted, not its target.
    ///
    /// Returns 0; ORV_E_ACCESS_DENIED also when there are keys below it and `recursive` is not set;
    /// ORV_E_OUT_OF_MEMORY; otherwise the converted status. On failure some keys may have been deleted.
    ORV_API OrvResult DeleteKey(const Name &path, bool recursive);
    ORV_API OrvResult DeleteKeyTransacted(OrvWinTransaction &transaction, const Name &path, bool recursive);

    /// Gets the platform's facts about the current key. Returns 0 or the converted status.
    ORV_API OrvResult GetKeyInfo(OrvBasWinRegistryKeyInfo &info);
    ORV_API OrvResult GetKeyInfoTransacted(OrvWinTransaction &transaction, OrvBasWinRegistryKeyInfo &info);

    // Values of the current key. Sizes are in bytes.

    /// Sets a value; its bytes are not checked. Returns 0; ORV_E_INVALID_ARGUMENT when `bytes` is null but
    /// `size` is not 0; otherwise the converted status.
    ORV_API OrvResult SetValue(OrvBasWinRegistryValueType type, const void *bytes, uint32_t size,
                               const Name &name);
    ORV_API OrvResult SetValueTransacted(OrvWinTransaction &transaction, OrvBasWinRegistryValueType type,
                                         const void *bytes, uint32_t size, const Name &name);

    /// Gets a value and its type. Up to 256 bytes take one native call. Strings are returned terminated and
    /// with an even number of bytes, multi-strings with two terminators; a value without bytes is returned
    /// without bytes.
    ///
    /// Returns 0; ORV_E_OUT_OF_MEMORY, or the buffer's failure; otherwise the converted status. On failure
    /// `type` and the buffer are as they were.
    ORV_API OrvResult QueryValue(OrvBasWinRegistryValueType &type, IOrvBuffer<unsigned char> &bytes,
                                 const Name &name);
    ORV_API OrvResult QueryValueTransacted(OrvWinTransaction &transaction, OrvBasWinRegistryValueType &type,
                                           IOrvBuffer<unsigned char> &bytes, const Name &name);

    // Typed forms. Getters return ORV_E_VALUE_TYPE for a value of another type, and ORV_E_INVALID_DATA for a
    // number of another size; otherwise as QueryValue. Setters return as SetValue. The WithDefault getters
    // give `defaultValue` and ORV_S_NOT_SET when there is no such value.

    /// Of type 3. See above for the results.
    ORV_API OrvResult GetBinaryValue(IOrvBuffer<unsigned char> &bytes, const Name &name);
    ORV_API OrvResult SetBinaryValue(const void *bytes, uint32_t size, const Name &name);

    /// Of type 4, or of type 5, whose bytes are swapped.
    ORV_API OrvResult GetDWordValue(uint32_t &value, const Name &name);
    ORV_API OrvResult GetDWordValueWithDefault(uint32_t &value, const Name &name, uint32_t defaultValue);

    /// As type 4, or with `bigEndian` as type 5 with swapped bytes.
    ORV_API OrvResult SetDWordValue(uint32_t value, const Name &name, bool bigEndian = false);

    /// Of type 11.
    ORV_API OrvResult GetQWordValue(uint64_t &value, const Name &name);
    ORV_API OrvResult GetQWordValueWithDefault(uint64_t &value, const Name &name, uint64_t defaultValue);
    ORV_API OrvResult SetQWordValue(uint64_t value, const Name &name);

    /// Of type 1 or 2, up to the first terminator. With `expand` the variables in a value of type 2 are
    /// replaced, as by OrvNtdll_RtlExpandEnvironmentStrings_T, and its failures may be returned.
    ORV_API OrvResult GetStringValue(IOrvString<wchar_t> &value, const Name &name, bool expand = false);

    /// As GetStringValue; when there is no such value, gives `defaultValue`, whose variables are not
    /// replaced. A null default is empty.
    ORV_API OrvResult GetStringValueWithDefault(IOrvString<wchar_t> &value, const Name &name,
                                                const Name &defaultValue, bool expand = false);

    /// THE VALUE COMES FIRST, THEN THE NAME, as in all setters; here both are texts, so a call with swapped
    /// arguments compiles. Stores the text and one terminator as type 1, or with `expandable` as type 2.
    /// Returns ORV_E_INVALID_ARGUMENT for a text of more than 0x7FFFFFFE characters.
    ORV_API OrvResult SetStringValue(const Name &value, const Name &name, bool expandable = false);

    /// Passes each string of a multi-string to `strings`; an empty string ends it. On failure some strings
    /// may have been passed.
    ORV_API OrvResult GetStringArrayValue(NameInserter &strings, const Name &name);

    /// Sets a multi-string. Returns ORV_E_INVALID_ARGUMENT when one of the strings is empty, which would end
    /// the multi-string.
    ORV_API OrvResult SetStringArrayValue(NameEnumerator &strings, const Name &name);

    /// Deletes a value. Returns 0 or the converted status.
    ORV_API OrvResult DeleteValue(const Name &name);
    ORV_API OrvResult DeleteValueTransacted(OrvWinTransaction &transaction, const Name &name);

    /// Whether there is such a value.
    ORV_API bool ValueExists(const Name &name);
    ORV_API bool ValueExistsTransacted(OrvWinTransaction &transaction, const Name &name);

    // Enumeration of the current key. Each name takes one native call.

    /// Passes the name of each key below, or of each value, to `names`. Returns 0; ORV_E_OUT_OF_MEMORY; the
    /// inserter's failure; or the converted status. On failure some names may have been passed.
    ORV_API OrvResult EnumKeys(NameInserter &names);
    ORV_API OrvResult EnumValues(NameInserter &names);

    /// Starts an enumeration of the same names, from the first on. Returns 0, or the failure to open the
    /// parent when no key is open.
    ORV_API OrvResult GetChildrenEnumeratorImpl(OrvBasWinRegistryEnumerator &enumerator);
    ORV_API OrvResult GetValuesEnumeratorImpl(OrvBasWinRegistryEnumerator &enumerator);

    // Hives. A file is given by its DOS path (terminated). These operations need the privileges to back up
    // and to restore.

    /// Mounts the hive in `file` at the handle's path below the parent.
    ///
    /// Returns 0; ORV_E_INVALID_NAME when the handle has no path; the results of
    /// OrvNtdll_RtlDosPathNameToNtPathName_U_EliminateDosDevice; otherwise the converted status.
    ORV_API OrvResult LoadKey(const wchar_t *file);

    /// The same at `key` below the parent. `key` becomes the handle's path; the key that was open is closed.
    ORV_API OrvResult LoadKey(const Name &key, const wchar_t *file);

    /// Closes the key that is open, and unmounts the hive at the handle's path. Returns as LoadKey.
    ORV_API OrvResult UnLoadKey();

    /// Saves the current key and all below it to `file`, which must not exist: ORV_E_ALREADY_EXISTS. Returns
    /// otherwise as LoadKey; after a failure there is no file.
    ORV_API OrvResult SaveKey(const wchar_t *file);

    /// Replaces the contents of the current key by those that SaveKey wrote to `file`. `path`, which may be
    /// null, receives the full path of the file before the file is opened. Returns as LoadKey, or the
    /// string's failure.
    ORV_API OrvResult RestoreKey(const wchar_t *file, IOrvString<wchar_t> *path = nullptr);

    /// Sets `event` once: at the next change of names, values, attributes or security in the current key
    /// (with `subtree` also below it), or when the key is closed. Without an open key, the parent watches.
    /// The key need not have been opened with the right to be notified.
    ///
    /// Before Windows 8 the platform also ends the watch, and sets `event`, when the thread that called this
    /// ends. There, call it on a thread that keeps running, and check whether anything has changed.
    ///
    /// Returns 0; ORV_E_OUT_OF_MEMORY; or the converted status.
    ORV_API OrvResult StartSingleWatchingKeyChange(OrvBasEvent &event, bool subtree);

    /// Enables the privilege for the process, if its account has it, or disables it. Any other value means
    /// privilege 0. Returns 0; ORV_E_ACCESS_DENIED when the account does not have it; ORV_E_NOT_SUPPORTED
    /// before the library is initialized; otherwise the converted status.
    ORV_API static OrvResult EnablePrivilege(OrvBasWinRegistryPrivilege privilege, bool enable);

    // The text form of a location: "HKLM\SOFTWARE\Orv", and with a value "HKLM\SOFTWARE\Orv\\Name".

    /// Splits a text. The root has its short or its long name, in any letter case. The text after the first
    /// two separators in a row is the value's name; `hasValue` is then set, even if the name is empty.
    ///
    /// Returns 0; ORV_E_INVALID_ARGUMENT when the text does not start with the name of a root: nothing is
    /// written; or a string's failure, after which the path may have been written.
    ORV_API static OrvResult SplitRegistryPath(OrvBasWinRegistryRootType &root, IOrvString<wchar_t> &path,
                                               bool &hasValue, IOrvString<wchar_t> &valueName,
                                               const Name &text);

    /// Joins a text, with the root's short name, which is empty for a value that is not a root. Returns 0,
    /// ORV_E_OUT_OF_MEMORY or the string's failure.
    ORV_API static OrvResult CombineRegistryPath(IOrvString<wchar_t> &text, OrvBasWinRegistryRootType root,
                                                 const Name &path);
    ORV_API static OrvResult CombineRegistryPath(IOrvString<wchar_t> &text, OrvBasWinRegistryRootType root,
                                                 const Name &path, const Name &valueName);

    /// Opens the key at `path` below the current key, for the caller to close with ZwClose; the empty path
    /// opens the current key again. `access` is a native mask; the view's bits are added. The transaction may
    /// be null.
    ///
    /// Returns 0; ORV_E_NOT_SUPPORTED for a transaction where the platform has none; ORV_E_OUT_OF_MEMORY;
    /// otherwise the converted status. `handle` is written on success only.
    ORV_API OrvResult CreateHandleInternal(void *&handle, const Name &path, uint32_t access,
                                           OrvWinTransaction *transaction = nullptr);

private:
    enum Origin : uint32_t { kFromParent, kFromCurrentKey };
    enum Creation : uint32_t { kOpenOnly, kOpenLink, kCreateLast, kCreateAll };

    OrvResult ParentKey(void *&key) const;
    OrvResult CurrentKey(void *&key) const;
    OrvResult MakeState();
    OrvResult FindWay(Origin origin, OrvBasWinRegistryRootType &root, OrvUtf16CharHeapBuffer &way) const;
    OrvResult ApplyView(Origin origin, Name &path, OrvUtf16CharHeapBuffer &changed) const;
    OrvResult Open(Origin origin, const Name &path, uint32_t access, OrvWinTransaction *transaction,
                   Creation creation, void *&handle) const;
    OrvResult OpenBelow(void *base, const Name &path, uint32_t access, OrvWinTransaction *transaction,
                        Creation creation, void *&handle) const;
    OrvResult ReplaceKey(const Name &path, uint32_t access, OrvWinTransaction *transaction,
                         Creation creation);
    OrvResult CreateBelow(const Name &path, OrvWinTransaction *transaction, Creation creation);
    OrvResult ChangeRoot(OrvBasWinRegistryRootType root);
    bool Exists(const Name &path, OrvWinTransaction *transaction);
    OrvResult Delete(const Name &path, bool recursive, OrvWinTransaction *transaction);
    OrvResult DeleteTree(detail::NativeHandle &top, OrvWinTransaction *transaction) const;
    OrvResult OpenFirstChild(void *&child, OrvBasWinRegistryEnumerator &children,
                             OrvWinTransaction *transaction) const;

    template <typename Operation>
    OrvResult WithKey(uint32_t access, OrvWinTransaction *transaction, Operation operation) const;
    OrvResult Describe(OrvBasWinRegistryKeyInfo &info, OrvWinTransaction *transaction) const;
    OrvResult Set(OrvBasWinRegistryValueType type, const void *bytes, uint32_t size, const Name &name,
                  OrvWinTransaction *transaction);
    OrvResult Query(OrvBasWinRegistryValueType &type, IOrvBuffer<unsigned char> &bytes, const Name &name,
                    OrvWinTransaction *transaction);
    OrvResult Remove(const Name &name, OrvWinTransaction *transaction);
    bool HasValue(const Name &name, OrvWinTransaction *transaction);

    detail::RegistryState *state_;
    OrvBasWinRegistryRootType root_;
    OrvBasWinRegistryHandle *parent_;
    ViewMode viewMode_;
    OrvUtf16CharHeapBuffer path_;
};

static_assert(sizeof(OrvBasWinRegistryHandle) == 28, "fixed layout");
