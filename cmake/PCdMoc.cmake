# What AUTOMOC runs instead of Qt's moc: the same, without the folders of Qt's headers and of the compiler's. moc would
# read them all again for each class, which takes 0.2 s each time, for the same result: Qt's macros are words of its own
# language, and it ignores headers that it does not find. What our classes derive from and implement stands in headers
# of ours, which it reads as before. What it does not see are conditions on macros of others, such as Q_OS_LINUX:
# scripts/check allows none in the files that it reads.

include_guard(GLOBAL)

function(pcd_wrap_moc)
    get_target_property(moc Qt6::moc LOCATION)
    # In the wrapper, which is newer than all that moc has written once another Qt is installed: so all is written again.
    file(SHA256 "${moc}" digest)
    configure_file("${CMAKE_SOURCE_DIR}/cmake/moc.in" "${CMAKE_BINARY_DIR}/moc" @ONLY
        FILE_PERMISSIONS OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
    get_target_property(configurations Qt6::moc IMPORTED_CONFIGURATIONS)
    list(TRANSFORM configurations PREPEND IMPORTED_LOCATION_ OUTPUT_VARIABLE properties)
    foreach(property IN LISTS properties ITEMS IMPORTED_LOCATION)
        set_target_properties(Qt6::moc PROPERTIES "${property}" "${CMAKE_BINARY_DIR}/moc")
    endforeach()
endfunction()
pcd_wrap_moc()
