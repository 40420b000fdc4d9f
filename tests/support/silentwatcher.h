#pragma once

#include "machine_link.h"

/// Watches and says nothing of it. Any thread.
class SilentWatcher : public plclink::Watcher
{
public:
    bool OnReading(const plclink::Reading&) override { return true; }

    void OnUnreadable(const std::string&) override {}
};
