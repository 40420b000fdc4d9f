#include "pagesession.h"

namespace {

constexpr int narrowest = 10; // the layout of a grid that is narrower than its border never settles
constexpr int widest = 900;
constexpr int highest = 1200;

} // namespace

void Session::Run(int step)
{
    m_step = step;
    if (step % stepsOfARun == 0) {
        BeginRun(step / stepsOfARun);
        SettleLayout();
    }
    Step();
    SettleLayout();
    Compare(step % stepsOfARun == stepsOfARun - 1);
}

wxSize Session::RandomSize()
{
    const int width = m_dice.Below(widest - narrowest) + narrowest;
    return {width, m_dice.Below(highest - narrowest) + narrowest};
}

void Session::SettleLayout()
{
    if (m_layoutChanged) {
        FinishLayout(Frame());
        m_layoutChanged = false;
    }
}
