# What software centres show of the program. Writes METAINFO; with EMBERDECK_PICTURES_URL it has pictures. Runs within
# the configuration, and by itself: cmake -D METAINFO=FILE -D EMBERDECK_PICTURES_URL=URL -P cmake/MetaInfo.cmake
set(screenshots)
if(EMBERDECK_PICTURES_URL)
  set(screenshots "
  <screenshots>
    <screenshot type=\"default\">
      <caption>Effects on their timelines, the library beside them</caption>
      <image type=\"source\" width=\"1280\" height=\"800\">${EMBERDECK_PICTURES_URL}/window.png</image>
    </screenshot>
    <screenshot>
      <caption>A colour over the life of a key</caption>
      <image type=\"source\">${EMBERDECK_PICTURES_URL}/colour-curve.png</image>
    </screenshot>
  </screenshots>")
endif()
configure_file("${CMAKE_CURRENT_LIST_DIR}/../packaging/emberdeck.metainfo.xml.in" "${METAINFO}" @ONLY)
