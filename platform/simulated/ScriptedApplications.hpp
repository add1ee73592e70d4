// What the applications do that scripts can ask for. Internal to this layer.
#pragma once
#include <optional>
#include <string_view>

#include "WindowEngine/services/ScriptInterpreter.hpp"
#include "platform/simulated/ScriptValues.hpp"
#include "platform/simulated/World.hpp"

namespace quillo::simulated {

/// An application that runs and answers, in its own terms. Each call but folderExists() is one request of a
/// script; between two of them a person may act. What cannot be done throws a ScriptError.
class ScriptedApplication {
  public:
    ScriptedApplication(World& world, Application& application) : world_(world), application_(application) {}

    std::int64_t count(const Reference& windows);
    /// A list where the reference names several.
    Value get(const Reference& of, std::string_view property);
    /// The window by its identifier, as applications name what they are asked for.
    Reference resolved(const Reference& window);
    void set(const Reference& of, std::string_view property, const std::string& value);
    /// `kind` is window, document, tab or Finder window; of a window that does not say which it is, Missing.
    Value make(std::string_view kind, const std::optional<Reference>& at, const std::string& address);

    bool folderExists(std::string_view path) const { return world_.folderExists(path); }

  private:
    std::vector<Window*> requested();
    static Window& find(const std::vector<Window*>& windows, const Reference& reference);
    Value property(const Window& window, Reference::Part part, std::string_view name) const;
    std::string folderOf(const Window& window) const;
    Window& open(const std::string& title, const std::string& shown);
    bool saysWhichItIs() const;

    World& world_;
    Application& application_;
    bool nameless_ = false;  // the window that was made for a document has no identifier yet
};

ScriptOutcome scriptFailed(std::string_view message, int number);

/// The application runs and answers.
ScriptOutcome perform(World& world, Application& application, const Script& script);

}  // namespace quillo::simulated
