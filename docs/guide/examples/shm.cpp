#include "orv/orv.h"

namespace
{

/// The layout of the memory, on which all its users agree. A new section contains zeros.
struct Board {
    long visitors;
    wchar_t message[32];
};

constexpr unsigned long kBoardId = 0x0B0A4D;

} // namespace

int OrvMain(int, wchar_t **)
{
    // The server creates the section under an id, and maps it for itself through a view.
    OrvSharedMemoryServer server;
    OrvSharedMemoryView serverView;
    OrvResult result = server.Create(sizeof(Board), kBoardId, OrvBasSyncSession, nullptr);
    if (OrvSucceeded(result))
        result = serverView.Attach(server, 0, 0);
    if (OrvFailed(result))
        return 1;
    auto *const board = static_cast<Board *>(serverView.GetPointer());
    OrvCopyString(board->message, 32, L"Welcome");

    // A client, here in the same process, needs only the id.
    OrvSharedMemoryClient client;
    OrvSharedMemoryView clientView;
    OrvFlags<OrvAccessFlagsValues> access = OrvAccessRead;
    result = client.Open(kBoardId, OrvBasSyncSession, access | OrvAccessWrite);
    if (OrvSucceeded(result))
        result = clientView.Attach(client, 0, 0);
    if (OrvFailed(result))
        return 1;
    auto *const seen = static_cast<Board *>(clientView.GetPointer());
    _InterlockedIncrement(&seen->visitors);
    OrvPrint(L"%s, visitor %d\n", seen->message, board->visitors);

    // A view of a section has whole pages.
    unsigned int size = 0;
    clientView.GetSize(size);
    OrvPrint(L"%u bytes shown\n", size);

    // With another id there is no section.
    OrvPrint(L"%08X\n", client.Open(kBoardId + 1, OrvBasSyncSession, access));
    return 0;
}
