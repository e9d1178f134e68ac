"""The site that scripts/docs builds: the guides and the headers of the libraries' faces.

Doxygen reads a copy of the tree, in which the links of the guides lead to pages of the site, and
each header and folder has a sentence about itself. No line moves in the copy, so that warnings name
the lines of the sources.
"""
