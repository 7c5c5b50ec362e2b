# One Debian package for each component. What the programs load is found by dpkg-shlibdeps; what Qt loads at run time is
# named here.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME velmora)
set(CPACK_PACKAGE_VENDOR "The Velmora developers")
set(CPACK_PACKAGE_VERSION "${PROJECT_VERSION}")
set(CPACK_PACKAGE_HOMEPAGE_URL "${VELMORA_HOMEPAGE}")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_PRE_BUILD_SCRIPTS "${CMAKE_CURRENT_LIST_DIR}/strip_comments.cmake")
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ
                                                WORLD_EXECUTE)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_ENABLE_COMPONENT_DEPENDS OFF)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
string(REGEX REPLACE "^https?://" "" mail_host "${VELMORA_HOMEPAGE}")
set(CPACK_DEBIAN_PACKAGE_MAINTAINER "The Velmora developers <velmora@${mail_host}>")
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_COMPONENTS_ALL cli readers doc)

set(CPACK_DEBIAN_CLI_PACKAGE_NAME velmora-cli)
set(CPACK_DEBIAN_CLI_PACKAGE_SECTION science)
set(CPACK_COMPONENT_CLI_DESCRIPTION "scripts on surface geometry, without a display
velmora-batch opens surface geometry, grids of patches as well as triangles,
runs every command of the editor Velmora on it from scripts or for other
programs, tells what came of each, and saves the result. It needs neither a
display nor the libraries of a desktop.")
set(CPACK_DEBIAN_CLI_PACKAGE_SUGGESTS "velmora, velmora-readers, velmora-cad, velmora-doc, python3-velmora")

set(CPACK_DEBIAN_READERS_PACKAGE_NAME velmora-readers)
set(CPACK_DEBIAN_READERS_PACKAGE_SECTION science)
set(CPACK_DEBIAN_READERS_PACKAGE_ENHANCES "velmora, velmora-cli, python3-velmora")
set(CPACK_COMPONENT_READERS_DESCRIPTION "import of VRML, Inventor and CGNS for the editor Velmora
A program that the surface geometry editor Velmora, its scripts and its
Python package start to read files by the libraries of others: VRML and
Inventor, and CGNS, which it also writes.")

if(TARGET velmora-cad-reader)
  list(APPEND CPACK_COMPONENTS_ALL cad)
  set(CPACK_DEBIAN_CAD_PACKAGE_NAME velmora-cad)
  set(CPACK_DEBIAN_CAD_PACKAGE_SECTION science)
  set(CPACK_DEBIAN_CAD_PACKAGE_ENHANCES "velmora, velmora-cli, python3-velmora")
  set(CPACK_COMPONENT_CAD_DESCRIPTION "import of STEP and IGES for the editor Velmora
A program that the surface geometry editor Velmora, its scripts and its
Python package start to read files of CAD, STEP and IGES, as triangles or as
structured patches. The library for that is large, so it is a package apart.")
endif()

set(CPACK_DEBIAN_DOC_PACKAGE_NAME velmora-doc)
set(CPACK_DEBIAN_DOC_PACKAGE_SECTION doc)
set(CPACK_DEBIAN_DOC_PACKAGE_ARCHITECTURE all)
set(CPACK_DEBIAN_DOC_PACKAGE_SHLIBDEPS OFF)
set(CPACK_COMPONENT_DOC_DESCRIPTION "guide and examples of the surface geometry editor Velmora
Velmora edits the surface geometry of bodies: grids of patches and surfaces
of triangles. This package has the user guide, the schema of the events that
scripts print, and example models, scripts and Python programs.")

if(TARGET velmora)
  list(APPEND CPACK_COMPONENTS_ALL gui)
  set(CPACK_DEBIAN_GUI_PACKAGE_NAME velmora)
  set(CPACK_DEBIAN_GUI_PACKAGE_SECTION science)
  set(CPACK_DEBIAN_GUI_PACKAGE_DEPENDS "qt6-qpa-plugins, libqt6svg6, libgl1-mesa-dri")
  set(CPACK_DEBIAN_GUI_PACKAGE_RECOMMENDS "velmora-readers, qt6-wayland, fonts-dejavu-core")
  set(CPACK_DEBIAN_GUI_PACKAGE_SUGGESTS "velmora-cad, velmora-cli, velmora-doc, python3-velmora")
  set(CPACK_COMPONENT_GUI_DESCRIPTION "editor of the surface geometry of bodies
Velmora edits the surface geometry of aircraft, ships and any other body:
structured grids of patches, section by section and point by point, and
surfaces of triangles. Take hold of a section or a line with the mouse, space
its points anew, cut triangles into sections, close gaps, join two bodies, and
save the grid for the solver.")
endif()

if(TARGET velmora_python)
  list(APPEND CPACK_COMPONENTS_ALL python)
  math(EXPR next_python "${Python3_VERSION_MINOR} + 1")
  set(CPACK_DEBIAN_PYTHON_PACKAGE_NAME python3-velmora)
  set(CPACK_DEBIAN_PYTHON_PACKAGE_SECTION python)
  set(CPACK_DEBIAN_PYTHON_PACKAGE_DEPENDS
      "python3 (>= 3.${Python3_VERSION_MINOR}), python3 (<< 3.${next_python}), python3-numpy")
  set(CPACK_DEBIAN_PYTHON_PACKAGE_SUGGESTS "velmora-readers, velmora-cad, velmora-doc, python3-meshio")
  set(CPACK_DEBIAN_PYTHON_PACKAGE_CONTROL_EXTRA "${CMAKE_CURRENT_LIST_DIR}/python/postinst"
                                                "${CMAKE_CURRENT_LIST_DIR}/python/prerm")
  set(CPACK_COMPONENT_PYTHON_DESCRIPTION "surface geometry in Python: commands, and arrays of numpy
The package velmora runs the commands of the surface geometry editor Velmora
from Python, with the geometry as numpy arrays, and has its kernels as
functions on arrays: spacing the points of a curve, slicing triangles,
projecting patches, matching borders.")
endif()

include(CPack)
