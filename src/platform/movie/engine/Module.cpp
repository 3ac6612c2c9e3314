#include "platform/movie/engine/MovieReader.h"

// What the program looks up in caddis-movie.so; everything else in it is hidden.
extern "C" [[gnu::visibility("default")]] caddis::movie::Reader* caddisOpenMovie(const caddis::String& path)
{
    return caddis::movie::MovieReader::open(path).release();
}
