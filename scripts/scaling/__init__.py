"""What scripts/scale measures: cameras, recordings and clocks on more than one computer."""
