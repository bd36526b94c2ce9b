"""What tools/make-examples builds the example scenes from."""
