// What the reference says of the namespaces, each of which several headers open.

/// The library: its entry point is `Ovinta`.
namespace ovinta {}

/// The services that the library needs of the system, and the values that they work with.
namespace ovinta::platform {}

/// The services of Linux.
namespace ovinta::platform::linuxos {}

/// A simulated device, for tests.
namespace ovinta::platform::simulation {}
