#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <iostream>
#include <map>
#include <stdexcept>
#include <string>
#include <string_view>

#include "cli/client/HumanText.h"
#include "cli/client/NumberOptions.h"
#include "cli/client/RecordFile.h"
#include "cli/client/SandboxTools.h"
#include "cli/client/Table.h"
#include "cli/commands/Commands.h"
#include "platform/JSON.h"
#include "sandbox/domain/SnapshotFile.h"
#include "sandbox/faults/FaultKind.h"
#include "sandbox/faults/Faults.h"

namespace ovinta::cli {
namespace {

using platform::Dictionary;
using platform::List;
using platform::Value;

struct Following {
  bool follows = false;
  /// The one entry to show as a whole.
  std::optional<std::int64_t> entry = {};
};

struct SentPush {
  std::string pushToken;
  std::string file;
};

struct Fault {
  std::string method;
  std::string path;
  std::string kind;
  /// Each by its name.
  Dictionary settings;
};

/// Something of which the sandbox keeps a list, and tells by an event when there is more.
struct Journal {
  std::string_view path;
  std::string_view event;
  std::vector<Column> columns;
  /// Whether it shows more of a single entry than the list tells.
  bool showsOne = false;
  /// A line of its own for one entry.
  std::string (*line)(const Dictionary& entry);
};

List listAt(SandboxClient& client, std::string_view path) {
  const Value list = client.ask("GET", std::string(path));
  const auto* entries = list.as<List>();
  return entries ? *entries : List();
}

ExitCode printTable(const SandboxTool& tool, List rows, const std::vector<Column>& columns) {
  std::string text = tableText(columns, rows);
  tool.output.print({std::move(rows), std::move(text)});
  return ExitCode::success;
}

std::string textAt(const Dictionary& entry, const char* key) {
  const auto field = entry.find(key);
  return field == entry.end() ? "-" : scalarText(field->second);
}

/// The status in its colour, in the middle of a line.
std::string requestLine(const Dictionary& entry) {
  const auto status = platform::find<std::int64_t>(entry, "status");
  return textAt(entry, "time") + "  " +
         colored(textAt(entry, "status"), colorOf(static_cast<int>(status ? *status : 0)),
                 STDOUT_FILENO) +
         "  " + textAt(entry, "duration_ms") + " ms  " + textAt(entry, "method") + " " +
         textAt(entry, "path");
}

std::string pushLine(const Dictionary& entry) {
  return textAt(entry, "time") + "  to " + textAt(entry, "push_token") + "  " +
         textAt(entry, "payload");
}

/// Prints entries of a journal, each once.
class EntryPrinter {
 public:
  EntryPrinter(const SandboxTool& tool, const Journal& journal) : tool_(tool), journal_(journal) {}

  /// What has not been printed of all that is kept.
  void catchUp() {
    SandboxClient client(tool_.baseURL, tool_.token);
    for (const Value& entry : listAt(client, journal_.path)) print(*entry.as<Dictionary>());
  }

  void print(const Dictionary& entry) {
    const auto* id = platform::find<std::int64_t>(entry, "id");
    if (!id || *id <= last_) return;
    last_ = *id;
    std::cout << (tool_.json ? visibleJSON(entry) : journal_.line(entry)) << std::endl;
  }

 private:
  const SandboxTool& tool_;
  const Journal& journal_;
  std::int64_t last_ = 0;
};

ExitCode show(const SandboxTool& tool, const Following& options, const Journal& journal) {
  if (options.entry) {
    const std::string list(journal.path.substr(0, journal.path.find('?')));
    tool.output.print(Result(ask(tool, "GET", list + "/" + std::to_string(*options.entry))));
    return ExitCode::success;
  }
  if (!options.follows) return printTable(tool, listAt(tool.client, journal.path), journal.columns);
  EntryPrinter printer(tool, journal);
  tool.client.follow(
      "events", [] {},
      [&](std::string_view event, const Dictionary& data) {
        // The first event, and what comes in place of those that were missed.
        if (event == "reload") printer.catchUp();
        if (event == journal.event) printer.print(data);
        // The end of the process tells that nothing more can be written.
        if (!std::cout) tool.client.stop();
      });
  return ExitCode::success;
}

void addJournal(CLI::App& group, int& exitCode, const std::string& name,
                const std::string& description, const Journal& journal) {
  addTool<Following>(
      group, exitCode, name, description,
      [journal](CLI::App& command, Following& options) {
        CLI::Option* const follow = command.add_flag("--follow", options.follows,
                                                     "Go on with those to come, one line for each");
        if (!journal.showsOne) return;
        addNumber(command, "id", options.entry, "The one to show as a whole")->excludes(follow);
      },
      [journal](const SandboxTool& tool, const Following& options) {
        return show(tool, options, journal);
      });
}

ExitCode sendPush(const SandboxTool& tool, const SentPush& push) {
  const Dictionary record{{"push_token", push.pushToken},
                          {"payload", readRecordFile(push.file, "payload")}};
  Value sent = ask(tool, "POST", "pushes", record);
  tool.output.print({std::move(sent), "The push is sent to " + push.pushToken + ".\n"});
  return ExitCode::success;
}

/// Asks for something that leaves nothing to show but that it is done.
ExitCode perform(const SandboxTool& tool, const std::string& method, const std::string& path,
                 const std::string& sentence, const std::optional<Value>& record = {}) {
  ask(tool, method, path, record);
  tool.output.print(done(sentence));
  return ExitCode::success;
}

ExitCode takeSnapshot(const SandboxTool& tool, const std::string& file) {
  const Dictionary snapshot{{"data", ask(tool, "GET", "snapshot")}};
  if (file.empty()) {
    std::cout << visibleJSON(snapshot) << std::endl;
  } else {
    const std::string text = platform::writeJSON(snapshot) + "\n";
    if (const auto error = sandbox::writePrivateFile(file, text)) throw std::runtime_error(*error);
    tool.output.print(done("The snapshot is in " + file + "."));
  }
  return ExitCode::success;
}

ExitCode restore(const SandboxTool& tool, const std::string& path, const std::string& file,
                 const std::string& sentence) {
  const Dictionary snapshot = readRecordFile(file, "snapshot");
  const auto data = snapshot.find("data");
  if (data == snapshot.end()) throw std::runtime_error("the snapshot has nothing under \"data\"");
  return perform(tool, "PUT", path, sentence, data->second);
}

void addStateCommands(CLI::App& group, int& exitCode) {
  addTool<std::string>(
      group, exitCode, "snapshot", "Print, or write to a file, everything that the sandbox knows",
      [](CLI::App& command, std::string& file) {
        command.add_option("file", file, "Where to write it to")->type_name("FILE");
      },
      takeSnapshot);
  const auto addFile = [](CLI::App& command, std::string& file) {
    command.add_option("file", file, "A snapshot; \"-\": standard input")
        ->required()
        ->type_name("FILE");
  };
  addTool<std::string>(group, exitCode, "restore",
                       "Put a snapshot in place of everything that the sandbox knows", addFile,
                       [](const SandboxTool& tool, const std::string& file) {
                         return restore(tool, "snapshot", file, "The snapshot is restored.");
                       });
  addTool<std::string>(group, exitCode, "seed", "The same, and have every reset lead back to it",
                       addFile, [](const SandboxTool& tool, const std::string& file) {
                         return restore(tool, "seed", file,
                                        "The sandbox starts with the snapshot.");
                       });
  addTool<int>(
      group, exitCode, "reset", "Bring back the start", [](CLI::App&, int&) {},
      [](const SandboxTool& tool, int) {
        return perform(tool, "POST", "reset", "The sandbox is as at its start.");
      });
}

/// Asks for something that leads to another time, or to none, and shows the clock.
ExitCode showClock(const SandboxTool& tool, const std::string& method, const std::string& path,
                   const std::optional<Value>& record = {}) {
  tool.output.print(Result(ask(tool, method, path, record)));
  return ExitCode::success;
}

void addClockCommands(CLI::App& sandboxGroup, int& exitCode) {
  CLI::App* group = sandboxGroup.add_subcommand("clock", "The time that the sandbox goes by");
  group->require_subcommand(1);
  addTool<int>(
      *group, exitCode, "show", "Show it, and how far it is ahead of the machine's",
      [](CLI::App&, int&) {},
      [](const SandboxTool& tool, int) { return showClock(tool, "GET", "clock"); });
  addTool<std::string>(
      *group, exitCode, "set", "Set it to a time, from which it goes on",
      [](CLI::App& command, std::string& time) {
        command.add_option("time", time, "As in 2030-05-01T11:55:00.000Z")->required();
      },
      [](const SandboxTool& tool, const std::string& time) {
        return showClock(tool, "PUT", "clock", Dictionary{{"now", time}});
      });
  addTool<double>(
      *group, exitCode, "advance", "Move it on",
      [](CLI::App& command, double& seconds) {
        addNumber(command, "seconds", seconds, "By how many seconds")->required();
      },
      [](const SandboxTool& tool, double seconds) {
        return showClock(tool, "POST", "clock/advance", Dictionary{{"seconds", seconds}});
      });
  addTool<int>(
      *group, exitCode, "reset", "Have it show the machine's time again", [](CLI::App&, int&) {},
      [](const SandboxTool& tool, int) { return showClock(tool, "DELETE", "clock"); });
}

/// The settings of all faults, with what a user may want to know of each.
struct Setting {
  std::string type;
  std::string kinds;
};
std::map<std::string, Setting> faultSettings() {
  std::map<std::string, Setting> settings;
  const auto add = [&settings](const Value& list, const std::string& kind) {
    for (const Value& entry : *list.as<List>()) {
      const auto& fields = *entry.as<Dictionary>();
      Setting& setting = settings[*platform::find<std::string>(fields, "name")];
      setting.type = *platform::find<std::string>(fields, "type");
      if (!kind.empty()) setting.kinds += (setting.kinds.empty() ? "" : ", ") + kind;
    }
  };
  const Dictionary catalogue = sandbox::faultCatalogue();
  add(catalogue.at("often"), "");
  for (const Value& kind : *catalogue.at("kinds").as<List>()) {
    const auto& fields = *kind.as<Dictionary>();
    add(fields.at("settings"), *platform::find<std::string>(fields, "name"));
  }
  return settings;
}

std::string settingDescription(const std::string& name, const Setting& setting) {
  if (name == "count") return "Misbehave so many times; for good when left out";
  if (name == "every") return "Misbehave at every so manieth request only";
  if (name == "after") return "Set in after so many seconds";
  if (name == "for") return "Last for so many seconds; until cleared when left out";
  if (name == "probability") return "Misbehave with this probability, from 0 to 1";
  return "Of the faults: " + setting.kinds;
}

void addSetting(CLI::App& command, Dictionary& settings, const std::string& name,
                const Setting& setting) {
  std::string option = "--" + name;
  std::ranges::replace(option, '_', '-');
  const std::string description = settingDescription(name, setting);
  if (setting.type == "text") {
    command.add_option_function<std::string>(
        option, [&settings, name](const std::string& text) { settings[name] = text; }, description);
  } else if (setting.type == "integer") {
    command
        .add_option_function<std::int64_t>(
            option, [&settings, name](std::int64_t number) { settings[name] = number; },
            description)
        ->check(isDecimal<std::int64_t>);
  } else {
    command
        .add_option_function<double>(
            option, [&settings, name](double number) { settings[name] = number; }, description)
        ->check(isDecimal<double>);
  }
}

void addEndpoint(CLI::App& command, Fault& fault, bool isRequired) {
  command
      .add_option("method", fault.method,
                  "The method of the endpoint; ANY, with the path /ANY, for all endpoints")
      ->check(CLI::IsMember({"GET", "POST", "PUT", "PATCH", "ANY"}))
      ->required(isRequired);
  command.add_option("path", fault.path, "Its path, as in /m/v1/orders or /m/v1/orders/ANY")
      ->required(isRequired)
      ->check([](const std::string& path) {
        return path.starts_with('/') ? "" : "\"" + path + "\" does not begin with a slash";
      });
}

ExitCode printFaults(const SandboxTool& tool, const Value& faults) {
  const auto* rows = faults.as<List>();
  return printTable(tool, rows ? *rows : List(),
                    {{"METHOD", "method"},
                     {"PATH", "path"},
                     {"FAULT", "fault"},
                     {"COUNT", "count"},
                     {"EVERY", "every"},
                     {"PROBABILITY", "probability"},
                     {"AFTER", "after", "s"},
                     {"FOR", "for", "s"}});
}

ExitCode addFault(const SandboxTool& tool, const Fault& fault) {
  Dictionary record = fault.settings;
  record.insert_or_assign("fault", fault.kind);
  Value set = ask(tool, "PUT", "faults/" + fault.method + fault.path, record);
  const bool areAll = fault.method == "ANY";
  const std::string who =
      areAll ? "All endpoints misbehave" : fault.method + " " + fault.path + " misbehaves";
  tool.output.print({std::move(set), who + ": " + fault.kind + ".\n"});
  return ExitCode::success;
}

ExitCode clearFaults(const SandboxTool& tool, const Fault& fault) {
  if (!fault.method.empty() && fault.path.empty()) {
    throw std::runtime_error("an endpoint has a method and a path");
  }
  const std::string endpoint = fault.method.empty() ? "" : "/" + fault.method + fault.path;
  return printFaults(tool, ask(tool, "DELETE", "faults" + endpoint));
}

void addFaultCommands(CLI::App& sandboxGroup, int& exitCode) {
  CLI::App* group = sandboxGroup.add_subcommand("faults", "How endpoints of the sandbox misbehave");
  group->require_subcommand(1);
  addTool<int>(
      *group, exitCode, "list", "Show the faults in force", [](CLI::App&, int&) {},
      [](const SandboxTool& tool, int) { return printFaults(tool, ask(tool, "GET", "faults")); });
  addTool<Fault>(
      *group, exitCode, "add", "Have an endpoint misbehave, in place of what it did before",
      [](CLI::App& command, Fault& fault) {
        addEndpoint(command, fault, true);
        std::vector<std::string> kinds;
        for (const sandbox::FaultKind& kind : sandbox::faultKinds()) kinds.emplace_back(kind.name);
        command.add_option("fault", fault.kind, "What it does")
            ->required()
            ->check(CLI::IsMember(kinds));
        for (const auto& [name, setting] : faultSettings()) {
          addSetting(command, fault.settings, name, setting);
        }
      },
      addFault);
  addTool<Fault>(
      *group, exitCode, "clear", "Have one endpoint, or all, behave again",
      [](CLI::App& command, Fault& fault) { addEndpoint(command, fault, false); }, clearFaults);
}

}  // namespace

void addSandboxToolCommands(CLI::App& group, int& exitCode) {
  addJournal(group, exitCode, "requests", "Show the requests of apps that a sandbox has had",
             {.path = "requests?summary=1",
              .event = "request",
              .columns = {{"ID", "id"},
                          {"TIME", "time"},
                          {"METHOD", "method"},
                          {"STATUS", "status"},
                          {"DURATION", "duration_ms", "ms"},
                          {"PATH", "path"}},
              .showsOne = true,
              .line = requestLine});
  addFaultCommands(group, exitCode);
  addJournal(group, exitCode, "pushes", "Show the pushes that a sandbox has sent",
             {.path = "pushes",
              .event = "push",
              .columns = {{"TIME", "time"},
                          {"PUSH TOKEN", "push_token"},
                          {"LISTENERS", "listeners"},
                          {"PAYLOAD", "payload"}},
              .line = pushLine});
  addTool<SentPush>(
      group, exitCode, "send-push", "Send a push to a device",
      [](CLI::App& command, SentPush& push) {
        command.add_option("push-token", push.pushToken, "The device's push token")->required();
        command.add_option("payload", push.file, "JSON file of the payload; \"-\": standard input")
            ->required()
            ->type_name("FILE");
      },
      sendPush);
  addStateCommands(group, exitCode);
  addClockCommands(group, exitCode);
}

}  // namespace ovinta::cli
