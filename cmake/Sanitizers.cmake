# A finding of any sanitizer ends the program, so that it fails its test.
if(ZUNRTCP_SANITIZERS)
  add_compile_options(-fsanitize=${ZUNRTCP_SANITIZERS} -fno-sanitize-recover=all -fno-omit-frame-pointer)
  add_link_options(-fsanitize=${ZUNRTCP_SANITIZERS})
endif()
