# What CPack puts into the control file of the Debian package. packaging/debian/build has made the
# tree and passes in the environment where it is, the version, the list of its
# configuration files and the packages of the libraries.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME tonewright)
set(CPACK_PACKAGE_FILE_NAME tonewright)
set(CPACK_PACKAGE_VENDOR "Tonewright developers")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "voice librarian for FM synthesizers")
set(CPACK_PACKAGE_CONTACT "Tonewright developers <tonewright@example.org>")
set(CPACK_PACKAGE_VERSION $ENV{PACKAGE_VERSION})
set(CPACK_INSTALLED_DIRECTORIES $ENV{PACKAGE_TREE} /)
set(CPACK_PACKAGING_INSTALL_PREFIX /)
set(CPACK_SET_DESTDIR OFF)

set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_RELEASE $ENV{PACKAGE_RELEASE})
set(CPACK_DEBIAN_PACKAGE_SECTION sound)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_COMPRESSION_TYPE xz)
set(CPACK_THREADS 1) # several of them cut the archive into other pieces
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION TRUE)
set(CPACK_DEBIAN_PACKAGE_CONTROL_EXTRA $ENV{PACKAGE_CONFFILES})
set(CPACK_PACKAGE_DESCRIPTION "Tonewright shows the 32 voices of a bank, puts them in order, edits every
parameter of a voice, and keeps voices in catalogues. It speaks over MIDI with
the Yamaha DX7 and TX7, the Korg Volca FM and the Yamaha reface DX, and has
built-in instruments to try it without any.
.
The same work is done without a window by tonewright-cli.")

# The windows are measured for the faces of these two packages of fonts; without them texts are cut.
# No program is linked with the libraries that the built-in instruments are heard by and that keeps the
# archive.
set(CPACK_DEBIAN_PACKAGE_DEPENDS
    "fonts-liberation, fonts-dejavu-core, libportaudio2, libsqlite3-0, $ENV{PACKAGE_LIBRARIES}")
# Opens the manual in a browser.
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS xdg-utils)
