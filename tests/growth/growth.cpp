#include "debugfile.h"
#include "descendants.h"
#include "gridinframe.h"
#include "plcdebugframe_drain.h"
#include "plcprggrid.h"
#include "plcprgpanel.h"
#include "recordinghost.h"
#include "records.h"
#include "tempdir.h"
#include "waitfor.h"

#include <gtk/gtk.h>
#include <wx/app.h>
#include <wx/init.h>

#include <array>
#include <functional>
#include <string>
#include <valgrind/callgrind.h>

// Does things that must not cost more on a large program than on a small one, each under a name,
// for callgrind to count the instructions. Without valgrind it only does them.

namespace {

constexpr int manyLines = 65535;
constexpr int fewLines = 100;
constexpr int manyAnswers = 100000;
constexpr int fewAnswers = 10;
const wxSize size(600, 480);

void Count(const char* name, const std::function<void()>& work)
{
    work(); // what is done once only is not counted
    CALLGRIND_START_INSTRUMENTATION;
    CALLGRIND_ZERO_STATS;
    work();
    CALLGRIND_DUMP_STATS_AT(name);
    CALLGRIND_STOP_INSTRUMENTATION;
}

void CountPop(const char* name, int queued)
{
    KtValueQueue<CMD_DATA> queue;
    CMD_DATA answer{};
    for (int i = 0; i < queued; ++i) {
        queue.Push(answer);
    }
    Count(name, [&] {
        queue.Push(answer);
        queue.Pop(answer);
    });
}

void CountNewest(const char* name, int keys)
{
    NewestAnswers newest(VariableOf);
    std::array<AnswerArray, 2> rounds; // each is thinned out once
    for (AnswerArray& answers : rounds) {
        for (int i = 0; i < manyLines; ++i) {
            answers.Add(PlcMakeReadAnswer(static_cast<std::uint16_t>(i % keys), i));
        }
    }
    auto round = rounds.begin();
    Count(name, [&] { newest.TakeOlder(*round++); });
}

/// The program page on a block of so many lines.
class Page
{
public:
    explicit Page(int lines)
        : m_host(Write(lines)), m_frame(ShownFrame("growth")),
          m_panel(new PlcPrgPanel(m_frame, m_host.init)), m_grid(FirstOf<PlcPrgGrid>(*m_panel))
    {
        m_panel->SetAutoLayout(false);
        m_grid->SetSize(size);
        RunPending();
    }

    ~Page() { delete m_frame; }

    Page(const Page&) = delete;
    Page(Page&&) = delete;
    Page& operator=(const Page&) = delete;
    Page& operator=(Page&&) = delete;

    void CountResize(const char* name)
    {
        Count(name, [this] { SendSize(*m_grid); });
    }

    void CountAt(int row, const char* visible, const char* answer)
    {
        ScrollToRow(*m_grid, row);
        m_grid->DoPrgStateRequest();
        Count(visible, [this] { m_grid->DoPrgStateRequest(); });

        const CMD_DATA request = m_host.requests.back().record;
        int value = 0;
        Count(answer, [&] {
            m_panel->AnswerPrgState(PrgStateAnswerRecord(
                PlcFirstStep(&request),
                PlcLastStep(&request),
                std::vector<AnsweredStep>(request.key, {1, ++value})));
        });
    }

private:
    std::string Write(int lines)
    {
        m_dir.Write("prog_plcdbgi.dat", DebugFile({{"FB1", 0, ExecutableLines(lines)}}));
        return m_dir.File("prog");
    }

    TempDir m_dir;
    RecordingHost m_host;
    wxFrame* m_frame;
    PlcPrgPanel* m_panel;
    PlcPrgGrid* m_grid;
};

} // namespace

int main()
{
    int noArguments = 0;
    gtk_init(&noArguments, nullptr);
    if (!wxEntryStart(noArguments, static_cast<wxChar**>(nullptr)) || !wxTheApp->CallOnInit()) {
        return EXIT_FAILURE;
    }
    CountPop("pop-few", fewAnswers);
    CountPop("pop-many", manyAnswers);
    CountNewest("newest-few", fewAnswers);
    CountNewest("newest-many", manyLines);
    {
        Page page(fewLines);
        page.CountResize("resize-few");
    }
    {
        Page page(manyLines);
        page.CountResize("resize-many");
        page.CountAt(0, "visible-few", "answer-few");
        page.CountAt(manyLines, "visible-many", "answer-many");
    }
    wxTheApp->OnExit();
    wxEntryCleanup();
    return EXIT_SUCCESS;
}
