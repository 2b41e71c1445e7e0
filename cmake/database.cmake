# The property database is built from the seed at build time and stands beside the programs.
file(GLOB TERVALE_SEED_FILES CONFIGURE_DEPENDS ${CMAKE_SOURCE_DIR}/data/property-seed/*.csv)
set(TERVALE_DATABASE_FILE "${CMAKE_BINARY_DIR}/bin/Masterd$.mde")
add_custom_command(
  OUTPUT "${TERVALE_DATABASE_FILE}"
  COMMAND tervale-cli db build "${CMAKE_SOURCE_DIR}/data/property-seed" "${TERVALE_DATABASE_FILE}"
  DEPENDS ${TERVALE_SEED_FILES} tervale-cli
  COMMENT "Building the property database Masterd$.mde from data/property-seed"
  VERBATIM)
add_custom_target(tervale_database ALL DEPENDS "${TERVALE_DATABASE_FILE}")
