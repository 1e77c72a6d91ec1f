# What Debian wants beyond the install rules; cpack runs it on the staged tree before it packs.
set(share ${CPACK_TEMPORARY_DIRECTORY}/usr/share)
set(doc ${share}/doc/quorvane)
file(MAKE_DIRECTORY ${doc})
file(COPY ${CMAKE_CURRENT_LIST_DIR}/copyright DESTINATION ${doc})
file(COPY ${CMAKE_CURRENT_LIST_DIR}/changelog DESTINATION ${doc})

# The programs read their guide and examples in share/quorvane; people look for them in share/doc.
foreach(name README.md CHANGELOG.md docs examples)
  file(CREATE_LINK ../../quorvane/${name} ${doc}/${name} SYMBOLIC)
endforeach()
file(REMOVE ${share}/quorvane/LICENSE)
file(CREATE_LINK ../common-licenses/GPL-3 ${share}/quorvane/LICENSE SYMBOLIC)

include(${CMAKE_CURRENT_LIST_DIR}/finish.cmake)
