// Memory that several parties share: a section of the paging file, which other processes open by an object id
// and a name space, or a counted block of the process heap, which objects of one process pass on to each
// other. The server makes it, the client joins; views (orv/shm/shared_memory_view.h) show it.
//
// The memory starts as zeros when it is a section and as anything when it is a heap block. It has no header:
// what stands where, and who may write when, is a matter of those who share it.
//
// A section lives until the last handle and the last view of it are gone, in whatever process; a heap block,
// until the last server and client of it have closed. An object has no lock: creating, opening and closing
// must not race with its use.

#pragma once

#include "orv/base.h"
#include "orv/flags.h"
#include "orv/runtime/heap_object.h"
#include "orv/security/security_context.h"
#include "orv/sync/sync_named.h"

namespace detail
{
struct SharedHeapBlock;
}

/// What a client opens a section for; they combine.
enum OrvAccessFlagsValues : uint32_t {
    OrvAccessRead = 0x1,
    OrvAccessWrite = 0x2,
};

/// What server and client have in common.
class OrvSharedMemoryBase : public OrvHeapObject
{
public:
    OrvSharedMemoryBase(const OrvSharedMemoryBase &) = delete;
    OrvSharedMemoryBase &operator=(const OrvSharedMemoryBase &) = delete;

    /// Lets go of the memory: the heap block if there is one, otherwise the section. Views of a section stay;
    /// views of a heap block must not be used any longer once the block is gone. Always returns 0.
    ORV_API OrvResult Close();

    /// Whether a section or a heap block is held.
    ORV_API bool IsInitialized() const;

    /// Whether it is a heap block.
    ORV_API bool IsStorageHeap() const;

    /// Close.
    ORV_API virtual ~OrvSharedMemoryBase();

protected:
    ORV_API OrvSharedMemoryBase();

    OrvBasSyncNamed naming_;                       ///< id and name space
    void *section_ = reinterpret_cast<void *>(-1); ///< its handle, or the invalid one
    detail::SharedHeapBlock *heapBlock_ = nullptr; ///< null when there is none
    uint32_t heapSize_ = 0;                        ///< of the block, in bytes
    uint32_t access_ = 0;                          ///< with bit 0x2 views may be written to

    friend class OrvSharedMemoryClient;
    friend class OrvSharedMemoryView;
};

static_assert(sizeof(OrvSharedMemoryBase) == 284, "fixed layout");

/// Makes the memory.
class OrvSharedMemoryServer : public OrvSharedMemoryBase
{
public:
    ORV_API OrvSharedMemoryServer();
    ORV_API ~OrvSharedMemoryServer() override;

    /// Closes what is held and makes `size` bytes of shared memory.
    ///
    /// With OrvBasSyncProcess that is a heap block; id and context are not looked at. Otherwise it is a
    /// section by the id's name in the name space, under the context's descriptor; id 0 makes one without a
    /// name, which others reach by its handle only. The context may be null. The name stands in the directory
    /// of the caller's session, or in the base directory on a system that has no such directory.
    ///
    /// With OrvBasSyncGlobal, Windows lets a process outside session 0 make a section only if it has the
    /// privilege to create global objects (SeCreateGlobalPrivilege), which services and administrators have.
    /// Opening one takes no privilege. Applications from the store have no global names at all. A process
    /// without the right gets ORV_E_ACCESS_DENIED.
    ///
    /// Returns 0; ORV_S_ALREADY_EXISTS when a section of that name was there: it is shared, and it has the
    /// size that it was made with; ORV_E_OUT_OF_MEMORY; a failure of the context; otherwise the converted
    /// status: ORV_E_INVALID_ARGUMENT for a section of 0 bytes, ORV_E_PATH_NOT_FOUND when there is neither
    /// directory, ORV_E_INVALID_HANDLE when the name belongs to an object of another type. On failure nothing
    /// is held.
    ORV_API OrvResult Create(unsigned int size, unsigned long objectId, OrvBasSyncObjectNameSpace nameSpace,
                             OrvSecurityCtx *context);

    /// Close.
    ORV_API OrvResult Destroy();
};

/// Joins the memory that a server made.
class OrvSharedMemoryClient : public OrvSharedMemoryBase
{
public:
    ORV_API OrvSharedMemoryClient();
    ORV_API ~OrvSharedMemoryClient() override;

    /// Closes what is held and opens the section that a server made by this id in this name space, with the
    /// rights to read and to write as `access` says. Views are to be written to unless they are asked for
    /// read-only, whatever `access` says: a client without the right to write asks for that.
    ///
    /// Returns 0; ORV_E_NOT_PROVIDED for OrvBasSyncProcess, see Connect: then nothing has changed; otherwise
    /// the converted status: ORV_E_FILE_NOT_FOUND when there is no such section, ORV_E_ACCESS_DENIED. On a
    /// failure of the platform nothing is held.
    ORV_API OrvResult Open(unsigned long objectId, OrvBasSyncObjectNameSpace nameSpace,
                           OrvFlags<OrvAccessFlagsValues> access);

    /// Closes what is held and shares the memory of a server in this process: its heap block, or its section
    /// with the right to read. Views of that are read-only by themselves in a client that never opened
    /// anything; after an Open they have to be asked for read-only.
    ///
    /// Returns 0, or the converted status, ORV_E_INVALID_HANDLE when the server holds nothing; nothing is
    /// held then.
    ORV_API OrvResult Connect(OrvSharedMemoryServer &server);

    /// Takes a section over. One that is held is not closed. Views are as after Connect.
    ORV_API void AttachToSection(void *handle);

    /// Gives the section up to the caller: the invalid handle 0xFFFFFFFF when there is none.
    ORV_API void *DetachFromSection();
};

static_assert(sizeof(OrvSharedMemoryServer) == sizeof(OrvSharedMemoryBase), "no fields of its own");
static_assert(sizeof(OrvSharedMemoryClient) == sizeof(OrvSharedMemoryBase), "no fields of its own");
