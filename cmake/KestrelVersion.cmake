# The version of everything that is made here.
set(KESTREL_VERSION 1.3.12)
