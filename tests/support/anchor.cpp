// Keeps the support library buildable while it holds headers only.
