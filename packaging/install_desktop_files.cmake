# Runs at the installation: writes the files that name the places of the programs.
get_filename_component(prefix "${CMAKE_INSTALL_PREFIX}" ABSOLUTE)
set(VELARC_BIN "${prefix}/${bin_folder}")
set(VELARC_LIBEXEC "${prefix}/${libexec_folder}")

# write_desktop_file(TEMPLATE TARGET [PERMISSION...]): TARGET is relative to the data folder.
function(write_desktop_file template target)
  set(path "$ENV{DESTDIR}${prefix}/${data_folder}/${target}")
  message(STATUS "Installing: ${path}")
  configure_file("${desktop_files}/${template}.in" "${path}" @ONLY
    FILE_PERMISSIONS OWNER_READ OWNER_WRITE GROUP_READ WORLD_READ)
endfunction()

write_desktop_file(com.tolmar.velarc.desktop applications/com.tolmar.velarc.desktop)
write_desktop_file(com.tolmar.velarc.service dbus-1/services/com.tolmar.velarc.service)
write_desktop_file(com.tolmar.velarc.Actions.service
  dbus-1/services/com.tolmar.velarc.Actions.service)
write_desktop_file(servicemenu.desktop kio/servicemenus/com.tolmar.velarc.desktop)
write_desktop_file(sendto.desktop Thunar/sendto/com.tolmar.velarc.desktop)
write_desktop_file(com.tolmar.velarc.nemo_action nemo/actions/com.tolmar.velarc.nemo_action)

set(script "$ENV{DESTDIR}${VELARC_LIBEXEC}/velarc-send-files")
message(STATUS "Installing: ${script}")
configure_file("${desktop_files}/velarc-send-files.in" "${script}" @ONLY
  FILE_PERMISSIONS OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ
    WORLD_EXECUTE)

# Debian's shell reads the packages' completions elsewhere than its own maker's does.
set(zsh_folder zsh/site-functions)
if(prefix STREQUAL "/usr" AND EXISTS /etc/debian_version)
  set(zsh_folder zsh/vendor-completions)
endif()
file(INSTALL "${completions}/_velarc"
  DESTINATION "${CMAKE_INSTALL_PREFIX}/${data_folder}/${zsh_folder}")
