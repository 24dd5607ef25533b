#pragma once

#include <array>
#include <chrono>
#include <cstddef>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "../EnumNames.h"
#include "../Expected.h"
#include "../Services.h"

namespace ovinta::platform::linuxos {

/// Where a call with one of the enumerations of Linux is looked for.
using platform::name;
using platform::operator<<;

/// Which of the system's services knows the position. Has a `name`.
enum class PositionSource {
  /// `portal` inside a Flatpak sandbox, otherwise `geoclue`.
  automatic,
  /// GeoClue 2.
  geoclue,
  /// The location portal, which asks the user.
  portal,
  /// gpsd on this machine, which lets everybody in; for units without GeoClue.
  gpsd
};

/// The sources as files and command lines write them, in the order of their values.
inline constexpr std::array<std::string_view, 4> kPositionSourceNames{"automatic", "geoclue",
                                                                      "portal", "gpsd"};

/// What the Linux implementation needs to know of the application. Absent fields take the default.
/// A plain value.
struct Options {
  /// Names the application's own directory below the data directory, and the application to the
  /// services that know it by its desktop file. Default: the name of the executable.
  std::optional<std::string> applicationID = {};
  /// Where the application's resources and its `Info.json` lie. Default: the directory of the
  /// executable.
  std::optional<std::filesystem::path> mainBundleDirectory = {};
  /// Where settings, orders and pending notifications are kept. Default: `$XDG_DATA_HOME`, else
  /// `$HOME/.local/share`, and below it `<application id>/OvintaSDK`.
  std::optional<std::filesystem::path> dataDirectory = {};
  /// Where the library and these services write what they have to say. Default: standard error.
  std::shared_ptr<Log> log = nullptr;
  /// Which service the position comes from. Default: `automatic`.
  PositionSource positionSource = PositionSource::automatic;
  /// Where the bus of the system's services is, as D-Bus writes addresses. Default:
  /// `$DBUS_SYSTEM_BUS_ADDRESS`, else where that bus usually lies.
  std::optional<std::string> systemBusAddress = {};
  /// Called on the main queue with the user info of each notification that the user clicks; of one
  /// that was shown while the application did not run, at the next start or when the application
  /// says that it became active. A click on one that the application has shown before it ended is
  /// lost. Default: nobody is told.
  std::function<void(const Dictionary& userInfo)> onNotificationClicked = {};
  /// Whether `ovinta-notify-agent`, where it is installed, shows pending notifications while the
  /// application does not run. The agent then finds the data directory through a file in
  /// `$XDG_DATA_HOME`, else `$HOME/.local/share`; false takes it away. Inside a sandbox there is no
  /// agent.
  bool usesNotifyAgent = true;
  /// How fast the strength of a beacon falls with the distance, for the estimates of the latter: 2
  /// in free space; measure it where the beacons are. Default: 2, also for numbers outside of 1 to
  /// 10, of which the log tells.
  std::optional<double> beaconPathLossExponent = {};
  /// The longest that one HTTP request may take in all, a day at most; one that makes no progress
  /// for ten seconds ends sooner. Without it a service that sends a byte now and then would hold
  /// the request, and a fetch of the orders with it, for ever. Default: one minute, in which a poor
  /// mobile connection of 3 kB a second still brings fifty orders; also for times below a
  /// millisecond, of which the log tells.
  std::optional<std::chrono::milliseconds> requestTimeLimit = {};
  /// The most bytes that one HTTP request may receive, heads and framing included. What goes beyond
  /// is not read, and the request fails: to read an answer takes several times its size in memory.
  /// Default: 4 MiB, enough for two thousand orders; also for 0, of which the log tells.
  std::optional<std::size_t> answerSizeLimit = {};
  /// How requests are delivered that could not be sent, from memory and, for order events, from the
  /// data directory: docs/delivery.md. Default: a request that fails is reported and forgotten.
  std::optional<DeliveryOptions> delivery = {};
};

/// A full set of services of this system, none of them null. Makes the data directory (mode 0700)
/// when it is first written to. The main thread is the process's initial one, or the one that
/// called `claimMainThread` or `runMainLoop` before this function; it serves its queue by one of:
/// the GLib main loop of the default context, which GTK runs, and Qt where its event dispatcher is
/// GLib's; `runMainLoop`; `runMainTasks`. While it does none of them there is no position, beacon,
/// timer or notification; the log says so, once, when a task has waited for some seconds. May be
/// called from any thread.
OVINTA_EXPORT Services makeServices(const Options& options = {});

/// The services that work on values alone: text, date formatters, URLs and geodesy; the others are
/// null. They open no file, bus or connection and start no thread. For tests and tools that bring
/// the rest themselves. May be called from any thread.
OVINTA_EXPORT Services makeValueServices();

/// Serves the main queue on the calling thread until `quitMainLoop` is called; for applications
/// that run no loop of their own. On another thread than the main one it returns at once, and the
/// log says why.
OVINTA_EXPORT void runMainLoop();

/// Has `runMainLoop` return after the task in progress; before one is called, the next one returns
/// at once. May be called from any thread.
OVINTA_EXPORT void quitMainLoop();

/// Why a call was refused that is about the main thread. Nothing has changed then.
enum class MainThreadError {
  /// Another thread is the main one.
  otherThread,
  /// The call was made inside a task of the main queue.
  insideTask,
  /// The system has no file descriptor left.
  noDescriptor
};

/// The error as a sentence in English for developers. May be called from any thread.
OVINTA_EXPORT std::string_view message(MainThreadError error);

}  // namespace ovinta::platform::linuxos

template <>
struct ovinta::platform::EnumNames<ovinta::platform::linuxos::MainThreadError> {
  static std::string_view of(linuxos::MainThreadError error) { return linuxos::message(error); }
};

namespace ovinta::platform::linuxos {

/// Makes the calling thread the main one, for applications whose loop runs on another thread than
/// the process's initial one. Call it before `makeServices`. Absent for success, which it also is
/// where the thread is the main one already; once another is, it is `otherThread`. From then on no
/// other thread runs a task, should the GLib main loop of the default context run there.
[[nodiscard]] OVINTA_EXPORT std::optional<MainThreadError> claimMainThread();

/// Runs the tasks of the main queue that are due, for applications whose loop is their own: called
/// when `mainTasksDescriptor` is readable, or now and then. Takes no new task once the time is up,
/// but always the first; a task that has begun is run to its end. True where some that are due are
/// left. Other sources of GLib are not served. Main thread only, which no other thread runs a task
/// for from then on, and not inside a task: otherwise it is `otherThread` or `insideTask`, and
/// nothing is run.
OVINTA_EXPORT Expected<bool, MainThreadError> runMainTasks(std::chrono::milliseconds atMost);

/// A file descriptor that is readable while a task of the main queue is due, delayed ones included,
/// and none is being run; to be waited for by `poll` and its like, neither read nor closed. It is
/// the same at each call and stays until the process ends; where there is none it is
/// `noDescriptor`. May be called from any thread, before or after `makeServices`.
OVINTA_EXPORT Expected<int, MainThreadError> mainTasksDescriptor();

/// Asks for the permission to follow the user, as the application does before it expects the
/// library to: on Linux nobody has an answer before something follows the position for the first
/// time. The position is followed just until there is one, which may take as long as the user does.
/// Where there is no service yet, or the user has switched location off for all, the question rests
/// without cost: it is asked again when GeoClue or the portal comes, when the application becomes
/// active (`applicationDidBecomeActive`), and at the next call. A grant and a refusal end it.
/// Of several services that live it means those made last. May be called from any thread, after
/// `makeServices`, any number of times.
OVINTA_EXPORT void requestLocationAuthorization();

/// Whether the permission that `LocationServices` tell is still that of the launch before, because
/// nobody has answered this process. A refusal may have been lifted, or a grant taken back, since:
/// it takes a question to know. False without services. Of several services that live it means
/// those made last. Main thread only.
OVINTA_EXPORT bool isLocationAuthorizationKept();

/// To be called by the application whenever it comes to the foreground: Linux has no event of its
/// own for that. Posts `kApplicationDidBecomeActive` on the calling thread, which may be any, and
/// asks again, of the services made last, for a permission that was asked for in vain or that was
/// granted and has gone out of reach.
OVINTA_EXPORT void applicationDidBecomeActive();

}  // namespace ovinta::platform::linuxos

template <>
struct ovinta::platform::EnumNames<ovinta::platform::linuxos::PositionSource>
    : NamesInOrder<ovinta::platform::linuxos::kPositionSourceNames> {};
