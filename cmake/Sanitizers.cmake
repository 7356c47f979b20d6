# KXBASE_SANITIZE applies one sanitizer set to every target built in this tree.
#   address;undefined  - heap/stack errors and undefined behaviour, no recovery
#   thread             - data races
if(KXBASE_SANITIZE)
    string(REPLACE ";" "," _kx_san "${KXBASE_SANITIZE}")
    add_compile_options(-fsanitize=${_kx_san} -fno-omit-frame-pointer -fno-sanitize-recover=all)
    add_link_options(-fsanitize=${_kx_san})
    if(_kx_san MATCHES "undefined")
        # The float-divide-by-zero and float-cast checks catch conversions that the
        # library promises to saturate rather than leave undefined.
        add_compile_options(-fsanitize=float-cast-overflow,float-divide-by-zero)
        add_link_options(-fsanitize=float-cast-overflow,float-divide-by-zero)
    endif()
endif()
