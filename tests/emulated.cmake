# The tests that are left out where the programs are emulated, for each reason.

# They say nothing of the built programs: they look at the sources, or build with the compilers of
# this machine.
set(CTEST_CUSTOM_TESTS_IGNORE
    checks.declared_symbols
    checks.diagrams
    checks.docstrings
    checks.examples
    checks.format
    checks.includes
    checks.includes_test
    checks.public_headers
    checks.scripts)

# They start programs that have been copied or installed, by paths at which nothing emulates them.
list(APPEND CTEST_CUSTOM_TESTS_IGNORE
     checks.as_another_user
     checks.store_of_another_user)

# They want a process to end without a word, and the emulator has one about the signal that ends it.
list(APPEND CTEST_CUSTOM_TESTS_IGNORE
     OrderStoreDeathTest.AMissingOrMalformedModelEndsTheProcessWithoutAWord
     OrderStoreDeathTest.AStoreThatCannotBeLoadedEndsTheProcess)

# They start a process some hundred times, which takes the emulator too long.
foreach(moment before half after)
  list(APPEND CTEST_CUSTOM_TESTS_IGNORE
       Moments/DeliveryKillTest.NothingIsLostOrDoneTwice/${moment})
endforeach()
