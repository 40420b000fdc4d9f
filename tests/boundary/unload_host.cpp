#include "debugfile.h"
#include "hostloop.h"
#include "recordinghost.h"
#include "tempdir.h"

#include <gtest/gtest.h>

#include <dlfcn.h>

// A GTK host that nothing but the debugger library brings the toolkit into: what happens when it
// unloads the library.

namespace {

/// An opened debugger library.
class Library
{
public:
    Library() : m_handle(dlopen(PLCDEBUG_LIBRARY, RTLD_NOW | RTLD_LOCAL)) {}

    ~Library() { dlclose(m_handle); }

    Library(const Library&) = delete;
    Library(Library&&) = delete;
    Library& operator=(const Library&) = delete;
    Library& operator=(Library&&) = delete;

    template <typename Export> Export Find(const char* name) const
    {
        return reinterpret_cast<Export>(dlsym(m_handle, name));
    }

private:
    void* m_handle;
};

} // namespace

TEST(Unloading, TheLibraryCanBeLoadedUsedAndUnloadedAgainAndAgain)
{
    const TempDir files;
    files.Write("machine_plcdbgi.dat", DebugFile({{"OB1"}}));
    RecordingHost host(files.File("machine"));

    for (int round = 0; round < 5; ++round) {
        SCOPED_TRACE(round);
        const Library library;
        const auto create = library.Find<PlcCreateExport>("ExportCreatePlcDebugger");
        const auto answer = library.Find<PlcAnswerExport>("ExportAnswerReadVar");
        CMD_DATA value = PlcMakeReadAnswer(0, 1);
        auto* bytes = reinterpret_cast<unsigned char*>(&value);

        EXPECT_EQ(answer(bytes), 0);
        ASSERT_EQ(OnGui([&] { return create(&host.init); }), 1);
        EXPECT_EQ(answer(bytes), 1);
        OnGui(library.Find<PlcDestroyExport>("ExportDestroyPlcDebugger"));
        EXPECT_EQ(answer(bytes), 0);
    }
    EXPECT_FALSE(HostLoopHasEnded());
}
