#include "orv/orv.h"

namespace
{

/// What stands in the memory is agreed on by those who share it. Its bytes start as zeros.
struct Board {
    long visitors;
    wchar_t message[32];
};

constexpr unsigned long kBoardId = 0x0B0A4D;

} // namespace

int OrvMain(int, wchar_t **)
{
    // The server makes the section by an id, and shows it to itself through a view.
    OrvSharedMemoryServer server;
    OrvSharedMemoryView serverView;
    OrvResult result = server.Create(sizeof(Board), kBoardId, OrvBasSyncSession, nullptr);
    if (OrvSucceeded(result))
        result = serverView.Attach(server, 0, 0);
    if (OrvFailed(result))
        return 1;
    auto *const board = static_cast<Board *>(serverView.GetPointer());
    OrvCopyString(board->message, 32, L"Welcome");

    // A client, here in the same process, knows the id and nothing else.
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

    // Another id: nothing there.
    OrvPrint(L"%08X\n", client.Open(kBoardId + 1, OrvBasSyncSession, access));
    return 0;
}
