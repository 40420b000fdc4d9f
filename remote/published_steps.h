#pragma once

#include "machine_link.h"
#include "viewers.h"

#include <mutex>
#include <optional>
#include <string>

// The program states that a machine tells far away: to the viewer who asked last.

namespace plcremote {

/// One thread, except where it says so.
class PublishedSteps : private plclink::Client
{
public:
    using Time = Viewers::Time;

    /// @param link, viewers outlive it.
    PublishedSteps(plclink::MachineLink& link, Viewers& viewers, AnswerViewer answer);
    ~PublishedSteps() override;
    PublishedSteps(const PublishedSteps&) = delete;
    PublishedSteps(PublishedSteps&&) = delete;
    PublishedSteps& operator=(const PublishedSteps&) = delete;
    PublishedSteps& operator=(PublishedSteps&&) = delete;

    /// Asks the machine for what the viewers want now, and says so to who has lost them.
    void Serve();

    /// Takes them from the viewer, when somebody looks at them at the machine.
    void Turn(Time now);

    /// Tells the newest states.
    void Tell();

    void LetGo();

    /// The user who has them; empty: nobody. [any-thread]
    std::string User() const;

private:
    bool OnSteps(const plc::StepRange& range, const std::vector<plc::StepState>& states) override;
    void OnStepsTaken() override;
    void SetViewer(std::optional<Viewer> viewer);

    plclink::MachineLink& m_link;
    Viewers& m_viewers;
    const AnswerViewer m_answer;
    std::optional<plc::StepRange> m_asked; ///< Of the link.

    mutable std::mutex m_mutex;     ///< Guards what follows.
    std::optional<Viewer> m_viewer; ///< Whom they go to.
    std::optional<StepStatesMessage> m_newest;
    bool m_areTaken = false; ///< By somebody at the machine.
};

} // namespace plcremote
