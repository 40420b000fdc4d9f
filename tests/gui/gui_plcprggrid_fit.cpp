#include "gui_plcprgpage.h"
#include "waitfor.h"

TEST_F(PlcPrgPage, AnAnswerFitsTheCellsIntoAClientAreaThatHasChangedUnseen)
{
    OpenOnPage({{"OB1", 0, ExecutableLines(50)}});
    wxWindow* cells = m_grid->GetGridWindow();
    const wxSize fitting = cells->GetSize();
    cells->SetSize(fitting - wxSize(20, 20));

    AnswerSubscribed();

    EXPECT_TRUE(WaitFor("cells fit", [&] { return cells->GetSize() == fitting; }));
}
