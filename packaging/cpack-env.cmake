# Read by cpack before it packs. For a cross build, dpkg-shlibdeps must read
# the binaries with the target's objdump and look for their libraries among
# the target architecture's: it takes both from DEB_HOST_ARCH.
if(CPACK_DEBIAN_PACKAGE_ARCHITECTURE)
  set(ENV{DEB_HOST_ARCH} ${CPACK_DEBIAN_PACKAGE_ARCHITECTURE})
endif()
