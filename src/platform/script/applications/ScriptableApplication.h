#pragma once

#include "platform/script/AppleEvent.h"
#include "platform/script/ScriptingComponent.h"
#include "platform/script/applications/ScriptingDictionary.h"

#include <chrono>
#include <memory>

/// Programs of the user's that answer the events of scripts. docs/scriptable-applications.md tells how to
/// write one.
namespace caddis {

class ScriptableApplication {
public:
    ScriptableApplication(const String& name, ScriptingDictionary dictionary);

    /// The application whose dictionary NAME.sdef lies in the runtime directory's folder "applications", else
    /// in ~/Applications, else in /Applications (logical). Null without one, or when it cannot be read.
    static std::shared_ptr<const ScriptableApplication> named(const String& name);

    const String& name() const { return m_name; }
    const ScriptingDictionary& dictionary() const { return m_dictionary; }

    bool isRunning() const;

    /// Sends an event and waits for its answer. Errors are the application's own, or -600 when it does not
    /// run, -1712 when it does not answer in time, -609 when what it answers is no answer.
    ScriptReply send(const AppleEvent& event, std::chrono::milliseconds deadline) const;

private:
    const String m_name;
    const ScriptingDictionary m_dictionary;
};

} // namespace caddis
