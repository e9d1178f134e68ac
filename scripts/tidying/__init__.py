"""Runs clang-tidy over the sources of src, and keeps which of its runs found nothing."""
