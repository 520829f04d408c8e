# Third-party notices: what of others is inside the shipped binaries, under the terms that its Debian package states.
set(KEL_TERMS_FOLDER /usr/share/doc CACHE PATH "Where Debian packages have their terms")
mark_as_advanced(KEL_TERMS_FOLDER)

# kel_missing_terms(RESULT [DESCRIPTION PACKAGE]...): those files with terms that are not there.
function(kel_missing_terms result)
  set(missing)
  while(ARGN)
    list(POP_FRONT ARGN description package)
    if(NOT EXISTS ${KEL_TERMS_FOLDER}/${package}/copyright)
      list(APPEND missing ${KEL_TERMS_FOLDER}/${package}/copyright)
    endif()
  endwhile()
  set(${result} ${missing} PARENT_SCOPE)
endfunction()

# kel_notices(FILE [DESCRIPTION PACKAGE]...): writes the terms of each package, each under a heading.
function(kel_notices file)
  set(text "Third-party software in the binaries of kelCameraVimba ${PROJECT_VERSION}\n")
  string(REPEAT "=" 100 line)
  while(ARGN)
    list(POP_FRONT ARGN description package)
    file(READ ${KEL_TERMS_FOLDER}/${package}/copyright content)
    string(APPEND text "\n${line}\n${description}\n${line}\n\n${content}")
  endwhile()
  file(CONFIGURE OUTPUT ${file} CONTENT "${text}" @ONLY)
endfunction()
